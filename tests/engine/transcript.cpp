#include "tests/engine/transcript.h"

#include <cstdio>
#include <ctime>
#include <fstream>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace {

constexpr char const* MARKS = "#@>";

bool isMarked(const std::string& line) {
    return !line.empty() && std::string(MARKS).find(line[0]) != std::string::npos;
}

TranscriptStep stepOf(const std::string& line) {
    const auto kind = static_cast<TranscriptStep::Kind>(std::string(MARKS).find(line[0]));
    const bool spaced = line.size() > 1 && line[1] == ' ';
    return {kind, line.substr(spaced ? 2 : 1), ""};
}

std::string dateOf(std::time_t moment) {
    std::tm utc = {};
    gmtime_r(&moment, &utc);
    char text[16];
    std::strftime(text, sizeof text, "%Y%m%d", &utc);
    return text;
}

// The clock of the controller counts from now; what the model says is years old.
std::string maskMoments(std::string text) {
    static const std::regex moment("(Mon|Tue|Wed|Thu|Fri|Sat|Sun) [A-Z][a-z][a-z] [ 0-9][0-9] "
                                   "[0-9]{2}:[0-9]{2}:[0-9]{2} [0-9]{4}");
    text = std::regex_replace(text, moment, "{time}");
    const std::time_t now = std::time(nullptr);
    const std::time_t day = 24 * 60 * 60;
    for (const std::time_t shift : {-day, std::time_t(0), day})
        text = std::regex_replace(
            text, std::regex(dateOf(now + shift) + "[0-9]{6}\\.[0-9]{6}[-+][0-9]{3}"),
            "{datetime}");
    return text;
}

std::string inBrackets(char c) {
    char text[8];
    std::snprintf(text, sizeof text, "<%02x>", static_cast<unsigned char>(c));
    return text;
}

} // namespace

std::string inNotation(const std::string& bytes) {
    std::string text;
    bool atBegin = true;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char c = bytes[i];
        const bool isEnd = c == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n';
        if (isEnd)
            ++i;
        if (isEnd || c == '\n')
            text += isEnd ? "\n" : "<LF>\n";
        else if ((static_cast<unsigned char>(c) < 0x20 && c != '\t') ||
                 (atBegin && isMarked(std::string(1, c))))
            text += inBrackets(c);
        else
            text += c;
        atBegin = isEnd || c == '\n';
    }
    if (!atBegin)
        text += "<END>\n";
    return maskMoments(text);
}

Transcript::Transcript(const std::string& file) {
    std::ifstream in(file);
    if (!in)
        throw std::runtime_error("no transcript " + file);
    std::string line;
    while (std::getline(in, line)) {
        if (isMarked(line))
            steps.push_back(stepOf(line));
        else if (steps.empty())
            throw std::runtime_error(file + " begins with an answer");
        else
            steps.back().answer += line + "\n";
    }
}

std::vector<std::string> Transcript::arrangements(const std::string& name) const {
    std::vector<std::string> found;
    for (const TranscriptStep& step : steps) {
        std::istringstream words(step.text);
        std::string word;
        if (step.kind != TranscriptStep::ARRANGE || !(words >> word) || word != name)
            continue;
        while (words >> word)
            found.push_back(word);
    }
    return found;
}

std::string Transcript::text() const {
    std::string text;
    for (const TranscriptStep& step : steps) {
        const bool isArrange = step.kind == TranscriptStep::ARRANGE;
        text += MARKS[step.kind] + std::string(isArrange || step.text.empty() ? "" : " ") +
                step.text + "\n" + step.answer;
    }
    return text;
}
