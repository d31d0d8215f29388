// A small test harness, so that the tests run where nothing but a compiler is installed.
//
//     TEST(ListKeepsItsOrder) {
//         for (const auto& c : cases) {
//             CONTEXT(c.label);
//             CHECK_EQ(sorted(c.input), c.expected);
//         }
//     }
//
// A failed CHECK is reported and the test goes on; a failed REQUIRE ends the test. CONTEXT names the case at hand in
// every report until the end of its scope. Check.cpp holds main(); arguments select tests by substring.
#pragma once

#include "platform/Log.h"

#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace check {

struct Abandoned {};  // thrown by REQUIRE

bool add(const char* name, void (*body)());
void fail(const char* file, int line, const std::string& what);
int failures();  // of the test at hand

class Context {
public:
    explicit Context(std::string label);
    ~Context();
    Context(const Context&) = delete;
};

// A fresh folder, removed with everything in it at the end of its scope.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    const std::string& path() const { return path_; }
    std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }

private:
    std::string path_;
};

// Sets an environment variable (null: unsets it) and puts the old value back.
class ScopedEnvironment {
public:
    ScopedEnvironment(const char* name, const char* value);
    ~ScopedEnvironment();
    ScopedEnvironment(const ScopedEnvironment&) = delete;

private:
    std::string name_;
    std::optional<std::string> old_;
};

std::string readFile(const std::string& path);                    // empty when it cannot be read
bool writeFile(const std::string& path, std::string_view bytes);  // and the folders above it

std::vector<std::string> linesIn(const std::string& text);

// A file of cases: "== label | argument" or "== label", the text's lines and "-> expected"; <HH> stands for one byte,
// and <EOF> for a last line without an end. What stands between two cases is passed over.
struct Case {
    std::string label, argument, text, expected;
};
std::vector<Case> casesIn(const std::string& path);

struct RecordingLog : platform::Log {
    std::vector<std::string> lines;
    void write(std::string_view line) override { lines.emplace_back(line); }
};

std::string show(const propertylist::PropertyList& value);
template <typename T>
std::string show(const T& value) {
    if constexpr (std::is_convertible_v<T, std::string_view>) {
        return std::string("\"").append(std::string_view(value)).append("\"");
    } else if constexpr (std::is_same_v<T, bool>) {
        return value ? "true" : "false";
    } else if constexpr (requires(std::ostream & out) { out << value; }) {
        std::ostringstream out;
        out << value;
        return out.str();
    } else if constexpr (requires { value.begin() == value.end(); }) {
        std::string text = "[";
        for (const auto& element : value) text.append(text.size() > 1 ? ", " : "").append(show(element));
        return text + "]";
    } else {
        return "(a value)";
    }
}

template <typename A, typename B>
bool checkEqual(const char* file, int line, const char* expression, const A& a, const B& b) {
    if (a == b) return true;
    fail(file, line, std::string(expression) + "\n      is  " + show(a) + "\n      not " + show(b));
    return false;
}

}  // namespace check

#define TEST(name)                                                             \
    static void name();                                                        \
    [[maybe_unused]] static const bool name##_added = check::add(#name, name); \
    static void name()
#define CHECK(...) ((__VA_ARGS__) ? void() : check::fail(__FILE__, __LINE__, #__VA_ARGS__))
#define REQUIRE(...) \
    ((__VA_ARGS__) ? void() : (check::fail(__FILE__, __LINE__, #__VA_ARGS__), throw check::Abandoned()))
#define CHECK_EQ(a, ...) check::checkEqual(__FILE__, __LINE__, #a, a, __VA_ARGS__)
#define CHECK_CONCATENATED_(a, b) a##b
#define CHECK_CONCATENATED(a, b) CHECK_CONCATENATED_(a, b)
#define CONTEXT(label) check::Context CHECK_CONCATENATED(context_, __LINE__)(label)
