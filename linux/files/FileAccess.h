// The system calls by which preference files are read and written, with one place where a test can make any of them
// fail, fall short, or happen at an awkward moment.
//
// Every call returns what the system call returns, or the negative error number. Calls that a signal may interrupt are
// started again.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <utility>

namespace linux {

class FileAccess {
public:
    enum class Call {
        Open,
        Read,
        Write,
        Flush,
        Stat,
        StatDescriptor,
        ReadLink,
        Lock,
        Rename,
        RenameExclusive,
        Link,
        Remove,
        ChangeMode,
        ChangeOwner,
        MakeFolder,
    };

    virtual ~FileAccess() = default;
    static FileAccess& system();

    // `folder` is a descriptor to which a relative path refers, or AT_FDCWD. O_CLOEXEC is always added.
    int open(int folder, const char* path, int flags, mode_t mode = 0);
    ssize_t read(int file, char* buffer, std::size_t size);
    ssize_t write(int file, const char* bytes, std::size_t size);
    int flush(int file);
    int stat(const char* path, struct stat& status);  // of a link's target
    int statDescriptor(int file, struct stat& status);
    ssize_t readLink(const char* path, char* buffer, std::size_t size);
    int tryLock(int file);  // the exclusive flock(2) of the open file; -EWOULDBLOCK while another one has it
    int rename(int folder, const char* from, const char* to);
    int renameExclusive(int folder, const char* from, const char* to);  // -EEXIST when `to` exists
    int link(int folder, const char* from, const char* to);
    int remove(int folder, const char* name, int flags = 0);
    int changeMode(int file, mode_t mode);
    int changeOwner(int file, uid_t user, gid_t group);
    int makeFolder(const char* path, mode_t mode);

    void unlock(int file) noexcept;
    void close(int file) noexcept;

protected:
    // Called before each call above but the last two. A negative error number makes the call fail with it, unmade;
    // `size` is the number of bytes to read or write and may be lowered.
    virtual int intercept(Call, std::size_t& size);

private:
    template <typename Function>
    auto perform(Call call, std::size_t size, Function function);
    template <typename Function>
    int perform(Call call, Function function);
};

// An open file, closed at the end.
class Descriptor {
public:
    Descriptor() = default;
    Descriptor(FileAccess& files, int number) : files_(&files), number_(number) {}
    Descriptor(Descriptor&& other) noexcept : files_(other.files_), number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept;
    ~Descriptor() { reset(); }
    void reset() noexcept;
    void release() noexcept { number_ = -1; }  // somebody else closes the file
    explicit operator bool() const { return number_ >= 0; }
    int number() const { return number_; }
    int error() const { return number_ < 0 ? -number_ : 0; }  // of the call that should have opened it

private:
    FileAccess* files_ = nullptr;
    int number_ = -1;
};

}  // namespace linux
