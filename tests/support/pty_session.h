// A session of the host program on a terminal of the test's own, as an operator has it: keys go in,
// and what comes out is drawn on a screen.
#ifndef VELCLP_TESTS_SUPPORT_PTY_SESSION_H
#define VELCLP_TESTS_SUPPORT_PTY_SESSION_H

#include "tests/support/run_directory.h"
#include "tests/support/screen.h"

#include <sys/types.h>
#include <termios.h>

#include <chrono>
#include <map>
#include <string>
#include <vector>

class PtySession {
public:
    using Milliseconds = std::chrono::milliseconds;

    struct Options {
        int columns = 80;
        int rows = 24;
        std::map<std::string, std::string> environment = {{"TERM", "xterm"}};
        std::vector<std::string> arguments;
        std::string name = "velclp"; // what the program finds as its own name
        std::string program;         // the host program unless another is named
        bool isControlling = true;   // or a terminal that sends no signals
    };

    PtySession(const RunDirectory& directory, const std::string& port)
        : PtySession(directory, port, Options()) {}
    PtySession(const RunDirectory& directory, const std::string& port, const Options& options);
    PtySession(const PtySession&) = delete;
    PtySession& operator=(const PtySession&) = delete;
    // Kills and reaps the program if it still runs.
    ~PtySession();

    // Sends bytes as typed or pasted; reads the output meanwhile.
    void type(const std::string& bytes);
    // Waits until what came out since the last such call holds the text, and gives all up to its
    // end; throws std::runtime_error with the rest when it does not come.
    std::string expect(const std::string& text, Milliseconds limit = Milliseconds(20000));
    // Waits for the prompt and gives what stands before it.
    std::string prompt();
    // Types a line and gives what comes between its end and the next prompt.
    std::string answer(const std::string& line);
    // Whether nothing comes out for that long.
    bool quiet(Milliseconds time);

    // Leaves out what came until now: the next wait is for what follows.
    void skip() { m_seen = m_output.size(); }

    // What an operator sees from the last prompt on: the rows, with a "|" before the cursor.
    std::vector<std::string> view() const;
    // Reads until the view is the one expected, or for some seconds; the view then.
    std::vector<std::string> viewBecomes(const std::vector<std::string>& expected);

    void resize(int columns, int rows) const;
    void signal(int number) const;
    // Closes the terminal's other end, as a line that is lost.
    void hangUp();
    // Reads to the end and waits for the program: its exit status, or 128 and the signal that ended
    // it. Throws std::runtime_error when it does not end.
    int wait(Milliseconds limit = Milliseconds(20000));

    termios settings() const;
    // Whether the terminal is set as it was before the program had it.
    bool isRestored() const;
    // The processor time that the program had taken when it was waited for.
    Milliseconds processorTime() const { return m_processorTime; }
    pid_t pid() const { return m_pid; }
    // What an operator would see, and the bytes that made it but for carriage returns, of which a
    // terminal adds its own.
    Screen& screen() { return m_screen; }
    const std::string& output() const { return m_output; }

private:
    bool pump(Milliseconds limit);

    pid_t m_pid = -1;
    int m_master = -1;
    std::string m_output;
    std::size_t m_seen = 0;
    Screen m_screen;
    std::vector<int> m_rows; // of the screen, that each byte of the output ended in
    int m_promptRow = 0;
    termios m_initial{};
    Milliseconds m_processorTime{0};
};

#endif
