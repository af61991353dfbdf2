// A session that a person can read, kept in a file: lines that begin with "> " are typed, what
// follows is the answer, byte for byte. In answers an end of line is CR LF; any other line feed is
// written as "<LF>", any other control character by its hexadecimal number in angle brackets, and
// an answer that does not end its last line ends in "<END>". Moments of now are written as {time}
// and {datetime}. Lines that begin with "#" are remarks, lines that begin with "@" arrange
// something: before the first command "@privileges N" and "@simulator ARGUMENT...", anywhere
// "@post RESOURCE TEXT".
#ifndef VELCLP_TESTS_ENGINE_TRANSCRIPT_H
#define VELCLP_TESTS_ENGINE_TRANSCRIPT_H

#include <string>
#include <vector>

struct TranscriptStep {
    enum Kind { REMARK, ARRANGE, COMMAND } kind;
    std::string text;   // behind the mark
    std::string answer; // of a command, in the notation of the file
};

class Transcript {
public:
    // Throws std::runtime_error for a file that cannot be read or begins with an answer.
    explicit Transcript(const std::string& file);

    std::vector<TranscriptStep> steps;

    // The arguments of the arrangements of that name.
    std::vector<std::string> arrangements(const std::string& name) const;
    // The file's text.
    std::string text() const;
};

// Bytes in the notation of the files.
std::string inNotation(const std::string& bytes);

#endif
