// UnfinishedFile.h - a file that is made beside its place and takes it when it is whole.
#ifndef TVBASE_UNFINISHED_FILE_H
#define TVBASE_UNFINISHED_FILE_H

#include <string>

/// An empty file beside `target`, private to the user until it takes the place. It goes away
/// with this object, and with the program when SIGINT, SIGTERM, SIGHUP, SIGQUIT or SIGPIPE
/// ends it; those of them that are ignored, as under nohup, stay ignored. What SIGKILL and
/// crashes leave behind stays.
///
/// **Errors**: the constructor and takePlace() throw the errno of what failed, as
/// std::system_error. **Memory**: names. **Threads**: one object at a time in the process.
class UnfinishedFile {
public:
    explicit UnfinishedFile(const std::string& target);
    ~UnfinishedFile();
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    const std::string& name() const { return m_name; }

    /// Renames to the target, whose old content ends; call it when the file is closed.
    void takePlace();

private:
    std::string m_target;
    std::string m_name; // empty when there is nothing to remove
};

#endif
