#include "velclp/clpstring.h"

#include "velclp/assertion.h"

#include <strings.h>

#include <algorithm>
#include <cstring>

namespace velmora_clp {

namespace {

// Cuts a line into words, character by character.
class WordCutter {
public:
    void feed(char c) {
        if (m_escaped) {
            add(c);
            m_escaped = false;
        } else if (c == '\\') {
            m_escaped = true;
            m_inWord = true;
        } else if (m_quote != 0) {
            if (c == m_quote)
                m_quote = 0;
            else
                add(c);
        } else {
            feedUnquoted(c);
        }
    }

    // False when the line ended inside a quote or behind a backslash.
    bool finish() {
        if (m_escaped || m_quote != 0)
            return false;
        endWord();
        return true;
    }

    const std::vector<std::string>& words() const { return m_words; }

private:
    void feedUnquoted(char c) {
        if (c == '"' || c == '\'') {
            m_quote = c;
            m_inWord = true;
        } else if (c == ' ') {
            endWord();
        } else {
            add(c);
        }
    }

    void add(char c) {
        m_word += c;
        m_inWord = true;
    }

    void endWord() {
        if (m_inWord)
            m_words.push_back(m_word);
        m_word.clear();
        m_inWord = false;
    }

    std::vector<std::string> m_words;
    std::string m_word;
    bool m_inWord = false;
    bool m_escaped = false;
    char m_quote = 0;
};

} // namespace

char** get_argv(const char* line) {
    if (line == nullptr)
        return nullptr;
    WordCutter cutter;
    for (const char* c = line; *c != '\0'; ++c)
        cutter.feed(*c);
    if (!cutter.finish() || cutter.words().empty())
        return nullptr;
    const std::vector<std::string>& words = cutter.words();
    char** argv = new char*[words.size() + 1];
    std::transform(words.begin(), words.end(), argv, newText);
    argv[words.size()] = nullptr;
    return argv;
}

char* newText(const std::string& text) {
    char* copy = new char[text.size() + 1];
    std::copy_n(text.c_str(), text.size() + 1, copy);
    return copy;
}

char* cpy_argv(char* word) {
    return word != nullptr ? newText(word) : nullptr;
}

void del_argv(char** argv) {
    if (argv == nullptr)
        return;
    for (char** word = argv; *word != nullptr; ++word)
        delete[] * word;
    delete[] argv;
}

std::vector<std::string> splitString(const std::string& text, const char* delimiter,
                                     bool keepEmpty) {
    std::vector<std::string> parts;
    const std::size_t width = delimiter != nullptr ? std::strlen(delimiter) : 0;
    std::size_t begin = 0;
    for (;;) {
        const std::size_t end = width != 0 ? text.find(delimiter, begin, width) : std::string::npos;
        const std::size_t length = end == std::string::npos ? end : end - begin;
        std::string part = text.substr(begin, length);
        if (keepEmpty || !part.empty())
            parts.push_back(std::move(part));
        if (end == std::string::npos)
            return parts;
        begin = end + width;
    }
}

std::string lastWord(const std::string& text) {
    const std::size_t blank = text.rfind(' ');
    const std::string word = blank == std::string::npos ? text : text.substr(blank + 1);
    return word.empty() ? " " : word;
}

std::string lowerString(const std::string& text) {
    std::string lower = text;
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return lower;
}

int strcmp_nocase(const char* src, const char* dest) {
    VELCLP_ASSERT(src != nullptr && dest != nullptr, "src!=__null&&dest!=__null");
    return strcasecmp(src, dest);
}

} // namespace velmora_clp
