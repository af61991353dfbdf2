// A child process with pipes on its standard descriptors. It is killed and reaped with this
// object, and killed by the kernel when the test itself dies.
#ifndef VELCLP_TESTS_SUPPORT_CHILD_PROCESS_H
#define VELCLP_TESTS_SUPPORT_CHILD_PROCESS_H

#include <chrono>
#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

class ChildProcess {
public:
    using Milliseconds = std::chrono::milliseconds;

    // Starts a program (argv[0] is its path). The environment is this process's with the given
    // variables set; one with the value "" is removed. Throws std::runtime_error.
    explicit ChildProcess(const std::vector<std::string>& arguments,
                          const std::map<std::string, std::string>& environment = {});
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t pid() const { return m_pid; }

    // Writes to its standard input, reading its output meanwhile; false when it has closed it.
    bool send(const std::string& text);
    void closeInput();

    // Reads until the output holds the text; false at the output's end or after the time.
    bool waitForOutput(const std::string& text, Milliseconds limit = Milliseconds(20000));
    // Reads both outputs to their ends and waits for the process. The exit status, or 128 and the
    // signal that ended it. Throws std::runtime_error when it does not end in time.
    int wait(Milliseconds limit = Milliseconds(60000));
    void signal(int number) const;

    // All bytes read so far.
    const std::string& output() const { return m_output; }
    const std::string& errors() const { return m_errors; }

private:
    bool pump(Milliseconds limit, std::string* input);
    bool readSome(int& descriptor, std::string& into);
    int reap(Milliseconds limit);

    pid_t m_pid = -1;
    int m_status = -1;
    int m_in = -1;
    int m_out = -1;
    int m_err = -1;
    std::string m_output;
    std::string m_errors;
};

#endif
