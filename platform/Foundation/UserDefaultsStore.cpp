#include "Foundation/UserDefaultsStore.h"

#include "Foundation/ArchiveFormat.h"
#include "Foundation/PropertyList.h"

#include <Foundation/NSDictionary.h>
#include <Foundation/NSLog.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <new>
#include <span>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Larger files are neither read nor written: as many bytes as an archive may have.
constexpr std::size_t kLargestFile = kLargestArchive;

/// The path with symbolic links resolved, so that a change does not replace a link by a file.
std::string resolved(std::filesystem::path path)
{
    std::error_code error;
    constexpr int kMostLinks = 40; // as many as the system follows
    for (int links = 0; links < kMostLinks && std::filesystem::is_symlink(path, error); ++links) {
        const auto target = std::filesystem::read_symlink(path, error);
        path = path.parent_path() / target; // an absolute target replaces the whole path
    }
    return path.string();
}

} // namespace

bool UserDefaultsStore::Stamp::operator==(const Stamp& other) const
{
    return device == other.device && inode == other.inode && size == other.size
        && changed.tv_sec == other.changed.tv_sec && changed.tv_nsec == other.changed.tv_nsec;
}

UserDefaultsStore::Stamp UserDefaultsStore::stampOf(int descriptor)
{
    struct stat status { };
    if (descriptor < 0 || fstat(descriptor, &status) != 0)
        return {};
    return {status.st_dev, status.st_ino, status.st_size, status.st_mtim};
}

UserDefaultsStore::UserDefaultsStore(std::string path)
    : _path(resolved(std::move(path)))
{
}

RetainPtr<NSObject> UserDefaultsStore::value(const NSString& key)
{
    const std::lock_guard guard(_mutex);
    if (!_isRead)
        read(false);
    const auto pending = _pending.find(key);
    if (pending != _pending.end() && pending->second)
        return pending->second;
    if (pending == _pending.end()) {
        const auto stored = _values.find(key);
        if (stored != _values.end())
            return stored->second;
    }
    const auto registered = _registered.find(key);
    return registered != _registered.end() ? registered->second : nullptr;
}

void UserDefaultsStore::set(const NSString& key, RetainPtr<NSObject> value)
{
    const std::lock_guard guard(_mutex);
    _pending.insert_or_assign(key, std::move(value));
    writePending();
}

void UserDefaultsStore::addRegistered(const NSString& key, RetainPtr<NSObject> value)
{
    const std::lock_guard guard(_mutex);
    _registered.insert_or_assign(key, std::move(value));
}

bool UserDefaultsStore::synchronize()
{
    const std::lock_guard guard(_mutex);
    return _pending.empty() ? read(false) : writePending();
}

/// Reads the file if it changed. False when it exists and cannot be read: it must not be overwritten.
bool UserDefaultsStore::read(bool isLocked)
try {
    _isRead = true;
    // Non-blocking, because the path may be that of a pipe.
    FileDescriptor file(open(_path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file && errno != ENOENT)
        return fail("be read");
    if (!file) {
        _values.clear();
        _file = FileDescriptor();
        return true;
    }
    const Stamp stamp = stampOf(file.get());
    if (_file && stamp == _stamp)
        return true;
    const auto content = file.readAll(kLargestFile);
    if (!content)
        return fail("be read");
    const std::string_view xml(reinterpret_cast<const char*>(content->data()), content->size());
    const auto root = xml.empty() ? make<NSDictionary>() : readPropertyList(xml);
    const auto* dictionary = dynamic_cast<const NSDictionary*>(root.get());
    if (!dictionary && !isLocked) {
        // Another process may be renaming it: only under the lock is this certain.
        const FileDescriptor locked = lock();
        return locked ? read(true) : fail("be set aside, damaged as it is");
    }
    if (!dictionary && !setDamagedAside())
        return fail("be set aside, damaged as it is");
    _values = dictionary ? Values(dictionary->begin(), dictionary->end()) : Values();
    _file = dictionary ? std::move(file) : FileDescriptor();
    _stamp = stamp;
    return true;
} catch (const std::bad_alloc&) { // a file can hold many times its own size in objects
    errno = ENOMEM;
    return fail("be read");
}

/// Renames a file that is not a property list. Only under the lock.
bool UserDefaultsStore::setDamagedAside()
{
    std::string aside = _path + ".damaged";
    for (int number = 2; access(aside.c_str(), F_OK) == 0; ++number)
        aside = _path + ".damaged-" + std::to_string(number);
    if (rename(_path.c_str(), aside.c_str()) != 0)
        return false;
    NSLog("User defaults: %s is damaged and counts as empty; it was renamed to %s", _path.c_str(),
        aside.c_str());
    return true;
}

/// The lock, which is held until the descriptor is closed; an invalid one when there can be no lock.
FileDescriptor UserDefaultsStore::lock()
{
    std::error_code error;
    const auto folder = std::filesystem::path(_path).parent_path();
    if (!std::filesystem::exists(folder, error))
        std::filesystem::create_directories(folder, error);
    const std::string path = _path + ".lock";
    for (;;) {
        FileDescriptor file(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
        if (!file)
            return file;
        while (flock(file.get(), LOCK_EX) != 0) {
            if (errno != EINTR)
                return FileDescriptor();
        }
        // The file may have been removed before it was locked: then another process can lock a new one.
        struct stat named { };
        const Stamp held = stampOf(file.get());
        if (stat(path.c_str(), &named) == 0 && named.st_ino == held.inode && named.st_dev == held.device)
            return file;
    }
}

bool UserDefaultsStore::writePending()
try {
    const FileDescriptor locked = lock();
    if (!locked)
        return fail("be written");
    if (!read(true))
        return false;
    Values merged = _values;
    for (const auto& [key, value] : _pending) {
        if (value)
            merged.insert_or_assign(key, value);
        else
            merged.erase(key);
    }
    if (!write(merged))
        return fail("be written");
    _values = std::move(merged);
    _pending.clear();
    _hasLoggedFailure = false;
    return true;
} catch (const std::bad_alloc&) {
    errno = ENOMEM;
    return fail("be written");
}

bool UserDefaultsStore::write(const Values& values)
{
    const auto xml = writePropertyList(*make<NSDictionary>(values));
    if (xml && xml->size() > kLargestFile) {
        errno = EFBIG;
        return false;
    }
    const std::string temporary = _path + ".tmp";
    FileDescriptor file(
        open(temporary.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600));
    if (!file || !xml)
        return false;
    // On the disk before it replaces the old file: after a power failure one of the two is complete.
    if (!file.writeAll(std::as_bytes(std::span(*xml))) || fsync(file.get()) != 0
        || rename(temporary.c_str(), _path.c_str()) != 0) {
        const int reason = errno;
        unlink(temporary.c_str());
        errno = reason;
        return false;
    }
    _stamp = stampOf(file.get());
    _file = std::move(file);
    return true;
}

/// Logs that the file could not `what`, with the reason in `errno`, once until a write succeeds. Always
/// false.
bool UserDefaultsStore::fail(const char* what)
{
    const int reason = errno;
    if (!std::exchange(_hasLoggedFailure, true))
        NSLog("User defaults: %s cannot %s (%s); changes stay in memory", _path.c_str(), what,
            std::strerror(reason));
    return false;
}
