// Reads one physical line from a terminal in character mode and does all the echoing: cursor keys,
// deletion, history, wrapping at the window's edge, completion. A LineEdit is made for each line;
// the prompt and the column it left the cursor in outlive it.
#ifndef VELCLP_LINEEDIT_H
#define VELCLP_LINEEDIT_H

#include "velclp/linetext.h"

#include <string>
#include <vector>

class stdStream;

class LineEdit {
public:
    // The stream is borrowed.
    explicit LineEdit(stdStream* stream);
    LineEdit(const LineEdit&) = delete;
    LineEdit& operator=(const LineEdit&) = delete;
    virtual ~LineEdit();

    // Writes the prompt, wrapped at the window's edge, and keeps it.
    void Prompt(const std::string& text);

    // Reads to the end of a line or until `size` bytes are there, and copies them to `buf` without
    // a line end or a null byte: the count, -2 for a time-out or the end of input, -1 for an error.
    // `continuation` is null or points to the text of the lines before this one (a null-terminated
    // char*, or null for none); a line recalled from the history stands for them all and sets that
    // pointer to null.
    int getLine(void* buf, int size, bool echo, void** continuation);

    // What a pending key string is: 0 an arrow, 1 no escape sequence, 2 an unknown one, 3 an
    // unfinished one, 4 the start of the Delete key's.
    int isArrow(const std::string& keys);

    // Moves the terminal's cursor: columns to the right, rows down, negative for the other way.
    void move_cursor(int columns, int rows);
    void process_right(int n);
    void process_left(int n);
    // Writes the text from the cursor on; `back` leaves the cursor behind its first character.
    void write_string(bool back);
    void process_del();
    void process_backspace();
    // Puts a line of the history in the place of the text.
    void write_history_cmd(const std::string& text);
    void process_down();
    void process_up();
    void process_char(char c);
    void process_tab();

    // The text so far and the cursor's place in it.
    const std::string& text() const { return m_line.text(); }
    int cursor() const { return m_line.cursor(); }

    static std::string m_prompt;
    static int m_begin; // minus the columns that stand before the text on the screen
    static std::vector<std::string> (*helpFunc)(const std::string&);

private:
    void send(const std::string& bytes);
    void processKeys(std::string& pending);
    void processArrow(char direction);
    void processPlain(char byte);
    void moveBy(int n);
    bool continued() const;
    void leaveLine();
    void newRow();
    void complete(const std::string& word, const std::string& completion);
    void writeAside(const std::string& text);
    void listCompletions(const std::vector<std::string>& words);

    stdStream* m_stream;
    LineText m_line;
    bool m_echo;
    char** m_continuation;
    int m_width;
    std::string m_term;
};

#endif
