#include "provision.h"

#include "database/cdbc.h"
#include "database/create.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace embedded {
extern const char clpSql[];
extern const char clpsvcSql[];
extern const char sampleSchema[];
extern const char helpTopics[];
} // namespace embedded

namespace host {

namespace {

[[noreturn]] void refuse(const std::string& path, const std::string& why) {
    throw std::runtime_error(path + ": " + why);
}

[[noreturn]] void refuseErrno(const std::string& path) {
    refuse(path, std::strerror(errno));
}

void makeDirectory(const std::string& path) {
    if (mkdir(path.c_str(), 0755) != 0 && errno != EEXIST)
        refuseErrno(path);
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0)
        refuseErrno(path);
    if (!S_ISDIR(status.st_mode))
        refuse(path, "is not a directory");
}

bool isThere(const std::string& path) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0) {
        if (errno == ENOENT)
            return false;
        refuseErrno(path);
    }
    if (!S_ISREG(status.st_mode))
        refuse(path, "is not a plain file");
    return true;
}

// Keeps others out who provision the same directory.
class DirectoryLock {
public:
    explicit DirectoryLock(const std::string& path)
        : m_descriptor(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        if (m_descriptor < 0)
            refuseErrno(path);
        int result = 0;
        do {
            result = flock(m_descriptor, LOCK_EX);
        } while (result != 0 && errno == EINTR);
        if (result != 0) {
            const int error = errno;
            close(m_descriptor);
            refuse(path, std::strerror(error));
        }
    }
    ~DirectoryLock() { close(m_descriptor); }
    DirectoryLock(const DirectoryLock&) = delete;
    DirectoryLock& operator=(const DirectoryLock&) = delete;

private:
    int m_descriptor;
};

// A file that gets its content under a name of its own and its true name when it is whole.
class NewFile {
public:
    NewFile(std::string path, mode_t mode) : m_path(std::move(path)), m_draft(m_path + ".XXXXXX") {
        m_descriptor = mkostemp(m_draft.data(), O_CLOEXEC);
        if (m_descriptor < 0)
            refuseErrno(m_path);
        if (fchmod(m_descriptor, mode) != 0)
            m_error = errno;
    }
    ~NewFile() {
        close(m_descriptor);
        unlink(m_draft.c_str());
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    const std::string& draft() const { return m_draft; }

    void write(std::string_view content) {
        while (m_error == 0 && !content.empty()) {
            const ssize_t n = ::write(m_descriptor, content.data(), content.size());
            if (n >= 0)
                content.remove_prefix(static_cast<std::size_t>(n));
            else if (errno != EINTR)
                m_error = errno;
        }
    }

    // Never replaces anything: someone who provisioned at the same time was as good.
    void publish() {
        if (m_error == 0 && link(m_draft.c_str(), m_path.c_str()) != 0 && errno != EEXIST)
            m_error = errno;
        if (m_error != 0)
            refuse(m_path, std::strerror(m_error));
    }

private:
    std::string m_path;
    std::string m_draft;
    int m_descriptor;
    int m_error = 0;
};

void provideText(const std::string& path, const char* content) {
    if (isThere(path))
        return;
    NewFile file(path, 0644);
    file.write(content);
    file.publish();
}

// Leaves the files of the write-ahead log beside the database, so that logins that may not make
// files in the directory can open it.
void openOnce(const std::string& path) {
    DBUrl url("sqlite:" + path);
    DBConnection* connection = DBDriver::getConnection(url);
    try {
        DBTransaction transaction(*connection);
        transaction.commit();
    } catch (...) {
        connection->close();
        throw;
    }
    connection->close();
    DBDriver::closeIdle();
}

// The log of a database that was deleted while sessions had it open, or after one was killed, holds
// changes that the next database of that name would take for its own.
void removeOldLog(const std::string& path) {
    for (const char* suffix : {"-wal", "-shm"})
        if (unlink((path + suffix).c_str()) != 0 && errno != ENOENT)
            refuseErrno(path + suffix);
}

void provideDatabase(const std::string& directory, const std::string& name, const char* ddl) {
    const std::string path = directory + "/" + name;
    if (isThere(path))
        return;
    const DirectoryLock lock(directory);
    if (isThere(path))
        return;
    removeOldLog(path);
    try {
        NewFile file(path, 0666);
        createDatabase(file.draft(), ddl);
        file.publish();
        openOnce(path);
    } catch (const CDBC_Exception& failure) {
        refuse(path, failure.text());
    }
}

} // namespace

void provision(const std::string& directory) {
    makeDirectory(directory);
    provideDatabase(directory, "clp.db3", embedded::clpSql);
    provideDatabase(directory, "clpsvc.db3", embedded::clpsvcSql);
    provideText(directory + "/schema.conf", embedded::sampleSchema);
    provideText(directory + "/help.txt", embedded::helpTopics);
}

} // namespace host
