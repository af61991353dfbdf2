// The operator's terminal on descriptors 0 and 1: it is put into character mode while the stream
// lives, is read with a time-out that all streams share, and is given a LineEdit for each line.
// What is no terminal is read and written all the same.
#ifndef VELCLP_STDSTREAM_H
#define VELCLP_STDSTREAM_H

#include <string>

#include <sys/time.h>
#include <termios.h>

class HistoryBuf;

class stdStream {
public:
    // What a read or a line gives when the time ran out or the input has ended.
    static const int CLOSED = -2;

    stdStream();
    stdStream(const stdStream&) = delete;
    stdStream& operator=(const stdStream&) = delete;
    // Gives the terminal its settings back.
    virtual ~stdStream();

    // Reads at most `n` bytes: the count, 0 at the end of input, -1 for an error, -2 for a
    // time-out.
    virtual int read(void* buf, int n);

    // Reads one logical line, its parts joined at backticks, without a line end or a null byte:
    // its length, -2 for a time-out or the end of input, -1 for an error.
    virtual int getLine(void* buf, int size, bool echo);

    // Writes to descriptor 1, behind everything that the output stream still holds: the count, 0
    // for nothing to write.
    virtual int write(const void* buf, int n);

    // The window's columns and rows; 80 and 24 where the terminal does not say. Gives what ioctl
    // gives.
    virtual int WindowSize(int& columns, int& rows);

    virtual void Prompt(const std::string& text);

    // Gives the terminal its settings back, for an outside program.
    virtual void RestoreTTY();

    // Takes the terminal into character mode again.
    void RawTTY();

    // Makes the history, unless there is one.
    void CreateHistoryBuf();
    // Borrowed; null without one.
    HistoryBuf* history() const { return m_history; }

    // Seconds until a read gives up; 0 or less waits for ever.
    static void setTimeout(int seconds);

    // A descriptor to watch while a read waits. When it becomes readable, or a terminal's input
    // does, `handler` is called on the reading thread; a negative result ends the read with that
    // result, otherwise the wait goes on. -1 ends the watch.
    static void setWakeup(int fd, int (*handler)());

    static timeval this_tv;

private:
    int wait();

    HistoryBuf* m_history; // owned
    termios m_saved;
    int m_fd;
    bool m_tty; // the settings in m_saved are those of a terminal
    static int s_wakeupFd;
    static int (*s_wakeup)();
};

#endif
