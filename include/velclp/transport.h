// The input and output of a session. The engine, the commands and the renderer write to it, the
// host reads lines from it. Type "std" is the terminal; type "nul" swallows all output and cannot
// be read, and is what a command gets whose foreground is gone.
#ifndef VELCLP_TRANSPORT_H
#define VELCLP_TRANSPORT_H

#include <iostream>
#include <string>
#include <vector>

class stdStream;

class Transport {
public:
    // `timeout` in seconds; one that is not above 0 leaves the time-out as it is.
    Transport(std::string type, int timeout);
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;
    ~Transport();

    // Seconds until a read gives up; 0 or less waits for ever. Shared by all transports.
    void SetTimeout(int seconds);
    void CreateHistoryBuf();

    std::istream& in();
    std::ostream& out();
    std::ostream& err();

    // As the operations of stdStream; a null buffer ends the process, and a transport without a
    // stream gives -1 for a read and 0 for a write.
    int read(void* buf, int n);
    int getline(void* buf, int size, bool echo);
    int write(const void* buf, int n);
    int ignoreline(int n);

    // Ends a line with CR LF.
    static void endl(Transport& transport);
    static void clrscr(Transport& transport);
    void flush();

    Transport& operator<<(const std::string& text);
    Transport& operator<<(const char* text); // null writes nothing
    Transport& operator<<(int number);       // unsigned when the stream is in octal or hexadecimal
    Transport& operator<<(void (*manipulator)(Transport&));
    Transport& operator>>(std::string& word);
    Transport& operator>>(char* word);

    // The function that completes a line at the tab key.
    static void setHelpFunc(std::vector<std::string> (*help)(const std::string&));

    void Prompt(const std::string& text);
    std::string Type() const;

    // Hand the terminal to an outside program, and take it back.
    void RestoreTTY();
    void RawTTY();

    // Strips leading blanks and tabs in place; gives the new length.
    static int delblank(char* buf);

private:
    stdStream* m_stream; // owned; null for any type but "std"
    std::string m_type;
    std::istream& m_in;
    std::ostream& m_out;
    std::ostream& m_err;
    bool m_mute;
};

// The host program's transport. The host defines it; a program without one may leave it undefined.
extern Transport* trans __attribute__((weak));

#endif
