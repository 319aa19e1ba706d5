#pragma once

#include <Foundation/NSString.h>

#include <string>
#include <vector>

/// While it exists, messages to the log come here instead, from all threads. One at a time.
class KORVID_EXPORT NSLogCapture {
public:
    NSLogCapture();
    NSLogCapture(const NSLogCapture&) = delete;
    NSLogCapture& operator=(const NSLogCapture&) = delete;
    ~NSLogCapture();

    /// The messages so far, without date and program, in UTF-8.
    std::vector<std::string> messages() const;
};

/// While it exists, the journal is looked for at another socket.
class KORVID_EXPORT JournalSocketPath {
public:
    explicit JournalSocketPath(std::string path);
    JournalSocketPath(const JournalSocketPath&) = delete;
    JournalSocketPath& operator=(const JournalSocketPath&) = delete;
    ~JournalSocketPath();
};
