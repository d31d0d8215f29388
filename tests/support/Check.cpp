#include "tests/support/Check.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace check {
namespace {

struct Test {
    const char* name;
    void (*body)();
};

std::vector<Test>& tests() {
    static std::vector<Test> all;
    return all;
}
std::vector<std::string> contexts;
int failuresInTest = 0;

bool passes(const Test& test) {
    failuresInTest = 0;
    try {
        test.body();
    } catch (const Abandoned&) {
    } catch (const std::exception& error) {
        fail(test.name, 0, std::string("threw ") + error.what());
    }
    std::printf("%s %s\n", failuresInTest ? "FAILED" : "ok    ", test.name);
    std::fflush(stdout);
    return failuresInTest == 0;
}

std::string withBytes(const std::string& text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isByte = text[i] == '<' && i + 3 < text.size() && text[i + 3] == '>';
        bytes += isByte ? static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16)) : text[i];
        if (isByte) i += 3;
    }
    return bytes;
}

}  // namespace

bool add(const char* name, void (*body)()) {
    tests().push_back({name, body});
    return true;
}

void fail(const char* file, int line, const std::string& what) {
    ++failuresInTest;
    std::printf("%s:%d: ", file, line);
    for (const std::string& context : contexts) std::printf("[%s] ", context.c_str());
    std::printf("%s\n", what.c_str());
    std::fflush(stdout);  // a child of the test may end without
}

int failures() { return failuresInTest; }

Context::Context(std::string label) { contexts.push_back(std::move(label)); }
Context::~Context() { contexts.pop_back(); }

TemporaryFolder::TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "typeslate-test-XXXXXX").string();
    if (mkdtemp(pattern.data())) path_ = std::filesystem::canonical(pattern).string();
}
TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
}

ScopedEnvironment::ScopedEnvironment(const char* name, const char* value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old;
    value ? setenv(name, value, 1) : unsetenv(name);
}
ScopedEnvironment::~ScopedEnvironment() { old_ ? setenv(name_.c_str(), old_->c_str(), 1) : unsetenv(name_.c_str()); }

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

bool writeFile(const std::string& path, std::string_view bytes) {
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return static_cast<bool>(out.flush());
}

std::vector<std::string> linesIn(const std::string& text) {
    std::istringstream rest(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(rest, line);) lines.push_back(line);
    return lines;
}

std::vector<Case> casesIn(const std::string& path) {
    std::vector<Case> cases;
    Case current;
    for (const std::string& line : linesIn(readFile(path))) {
        if (line.starts_with("== ")) {
            const std::size_t bar = std::min(line.find(" |"), line.size());
            current = {line.substr(3, bar - 3), line.substr(std::min(line.size(), bar + 3)), "", ""};
        } else if (line.starts_with("->")) {
            current.text = withBytes(current.text.substr(0, current.text.find("<EOF>")));
            current.expected = withBytes(line.substr(std::min(line.size(), std::size_t{3})));
            cases.push_back(current);
        } else {
            current.text += line + "\n";
        }
    }
    return cases;
}

std::string show(const propertylist::PropertyList& value) { return value ? value.description() : "(nothing)"; }

}  // namespace check

int main(int argc, char** argv) {
    std::signal(SIGCHLD, SIG_DFL);  // who ignores it hands that down, and children then leave no status
    int passed = 0, failed = 0;
    for (const auto& test : check::tests()) {
        const auto selects = [&](const char* part) {
            return std::string_view(test.name).find(part) != std::string::npos;
        };
        if (argc < 2 || std::any_of(argv + 1, argv + argc, selects)) (check::passes(test) ? passed : failed) += 1;
    }
    std::printf("%d passed, %d failed\n", passed, failed);
    return failed == 0 && passed > 0 ? 0 : 1;
}
