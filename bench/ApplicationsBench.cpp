// The application index on a machine with 5,000 desktop entries, beside the bare reading of the same files. Rounds of
// the two alternate, so that noise hits both, and the best round of each counts.
#include "linux/applications/LinuxApplications.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>

namespace fs = std::filesystem;
using namespace platform;
using namespace linux;

namespace {

constexpr int kEntries = 5000, kRounds = 15, kLookUps = 1'000'000;

double secondsOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// About as long as those of packaged applications: translations of three keys and one action.
std::string entryText(int number) {
    const std::string name = "Application " + std::to_string(number);
    std::string text = "[Desktop Entry]\nVersion=1.0\nType=Application\nTerminal=false\nStartupNotify=true\n";
    for (const char* key : {"Name", "GenericName", "Comment"}) {
        text += std::string(key) + "=" + name + "\n";
        for (const char* locale : {"ar", "bg", "ca", "cs", "da", "de",    "el", "es",       "fi", "fr", "he", "hu",
                                   "it", "ja", "ko", "nl", "pl", "pt_BR", "ru", "sr@latin", "sv", "tr", "uk", "zh_CN"})
            text.append(key).append("[").append(locale).append("]=").append(name).append(" in its translation\n");
    }
    return text + "Exec=sh -c " + std::to_string(number) +
           " %U\nIcon=icon\nCategories=Utility;\nActions=new;\n[Desktop Action new]\nName=New\nExec=sh\n";
}

std::size_t readBare(const std::vector<std::string>& paths) {
    static std::string buffer(1 << 16, '\0');
    std::size_t size = 0;
    for (const std::string& path : paths) {
        const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        while (const ssize_t got = ::read(file, buffer.data(), buffer.size())) {
            if (got < 0) break;
            size += static_cast<std::size_t>(got);
        }
        ::close(file);
    }
    return size;
}

struct Timing {
    const char* what;
    double seconds;
    int times;
};

void print(const Timing& timing) { std::printf("%-48s %10.3f us\n", timing.what, timing.seconds / timing.times * 1e6); }

void compareFirstLookUp(const ApplicationEnvironment& environment, const std::vector<std::string>& paths) {
    struct {
        const char* what;
        std::function<bool(LinuxApplications&)> ask;
        double best = 1e9;
    } questions[] = {
        {"first look-up by identifier",
         [](auto& a) {
             return a.findApplication({{}, "application-1234", ""}).has_value();
         }},
        {"first look-up by name",
         [](auto& a) {
             return a.findApplication({{}, "", "Application 1234.app"}).has_value();
         }},
        {"first look-up of a process's program", [](auto& a) { return !a.applicationForProgram("/usr/bin/none"); }},
    };
    double bare = 1e9;
    std::size_t bytes = 0, answered = 0;
    for (int round = 0; round < kRounds; ++round) {
        bare = std::min(bare, secondsOf([&] { bytes = readBare(paths); }));
        for (auto& question : questions)
            question.best = std::min(question.best, secondsOf([&] {
                                         LinuxApplications applications(environment);
                                         answered += question.ask(applications);
                                     }));
    }
    std::printf("%zu files, %zu bytes; %zu of %zu answered\n", paths.size(), bytes, answered,
                kRounds * std::size(questions));
    print({"reading the files once", bare, 1});
    for (auto& question : questions)
        std::printf("%-48s %10.3f us, ratio %.2f (at most 4)\n", question.what, question.best * 1e6,
                    question.best / bare);
}

void timeLaterLookUps(LinuxApplications& applications, const std::vector<std::string>& paths) {
    std::vector<ApplicationQuery> byIdentifier, byName;
    for (int i = 0; i < kEntries; ++i) {
        byIdentifier.push_back({{}, "application-" + std::to_string(i), ""});
        byName.push_back({{}, "", "Application " + std::to_string(i) + ".app"});
    }
    std::size_t found = 0;
    const auto each = [&](const char* what, const std::function<void(std::size_t)>& lookUp) {
        const double seconds = secondsOf([&] {
            for (int i = 0; i < kLookUps; ++i) lookUp(static_cast<std::size_t>(i) * 7919 % kEntries);
        });
        print({what, seconds, kLookUps});
    };
    std::printf("later look-ups, each (at most 5 us):\n");
    each("  by identifier", [&](std::size_t i) { found += applications.findApplication(byIdentifier[i]).has_value(); });
    each("  by name", [&](std::size_t i) { found += applications.findApplication(byName[i]).has_value(); });
    each("  an identifier that is not there", [&](std::size_t) {
        found += applications.findApplication({fourCharCode("none"), "org.none", "None.app"}).has_value();
    });
    each("  display name of a path", [&](std::size_t i) { found += !applications.displayName(paths[i]).empty(); });
    std::printf("  %zu of %d found\n", found, 4 * kLookUps);
}

}  // namespace

int main() {
    std::string folder = (fs::temp_directory_path() / "typeslate-bench-XXXXXX").string();
    if (!::mkdtemp(folder.data())) return 1;
    ApplicationEnvironment environment = ApplicationEnvironment::current();
    environment.desktopEntryFolders = {folder};
    environment.bundleFolders.clear();
    std::vector<std::string> paths;
    for (int i = 0; i < kEntries; ++i) {
        paths.push_back(folder + "/application-" + std::to_string(i) + ".desktop");
        std::ofstream(paths.back()) << entryText(i);
    }
    compareFirstLookUp(environment, paths);
    LinuxApplications applications(environment);
    applications.findApplication({{}, "x", ""});
    timeLaterLookUps(applications, paths);
    std::size_t listed = 0;
    print({"whole list for the chooser", secondsOf([&] { listed = applications.installedApplications().size(); }), 1});
    std::ofstream(folder + "/new.desktop") << entryText(kEntries);
    ::usleep(300'000);
    print({"look-up after one more was installed", secondsOf([&] {
               listed += applications.findApplication({{}, "new", ""}).has_value();
           }),
           1});
    std::printf("%zu listed or found\n", listed);
    fs::remove_all(folder);
    return listed == kEntries + 1 ? 0 : 1;
}
