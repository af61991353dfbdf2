// The sessions of docs/tour.md and of README.md are each one of the host program against the
// simulator: what their blocks show is what a reader gets. VELCLP_UPDATE_TOUR=1 writes the answers
// into the pages instead, to be read before they are kept.
#include "tests/engine/command_session.h"
#include "tests/support/simulator_process.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>
#include <vector>

namespace {

const std::string PROMPT = "-> ";
const std::string FENCE = "```";

// A piece of the page: text, or a typed line with its answer.
struct Piece {
    std::string typed;
    std::string text;
};

std::vector<Piece> piecesOf(const std::string& file) {
    std::ifstream in(file);
    if (!in)
        throw std::runtime_error("no page " + file);
    std::vector<Piece> pieces(1);
    bool inBlock = false;
    for (std::string line; std::getline(in, line);) {
        const bool isFence = line.compare(0, FENCE.size(), FENCE) == 0;
        if (isFence && inBlock)
            pieces.emplace_back();
        inBlock = isFence ? !inBlock : inBlock;
        if (inBlock && line.compare(0, PROMPT.size(), PROMPT) == 0)
            pieces.push_back({line.substr(PROMPT.size()), ""});
        else
            pieces.back().text += line + "\n";
    }
    return pieces;
}

// What differs from one session to the next: moments, process ids, how often an update was looked
// at.
std::string withoutChance(std::string text) {
    static const std::vector<std::pair<std::regex, std::string>> chances{
        {std::regex("(Mon|Tue|Wed|Thu|Fri|Sat|Sun) [A-Z][a-z][a-z] [ 0-9][0-9] "
                    "[0-9]{2}:[0-9]{2}:[0-9]{2} [0-9]{4}"),
         "{time}"},
        {std::regex("[0-9]{14}\\.[0-9]{6}[-+][0-9]{3}"), "{datetime}"},
        {std::regex("(process |pid = )[0-9]+"), "$1{pid}"},
        {std::regex("\n#+\n"), "\n{marks}\n"}};
    for (const auto& [pattern, word] : chances)
        text = std::regex_replace(text, pattern, word);
    return text;
}

std::string printed(const std::string& bytes) {
    return std::regex_replace(bytes, std::regex("\r"), "");
}

class Tour : public testing::TestWithParam<std::pair<const char*, std::size_t>> {};

} // namespace

TEST_P(Tour, ShowsWhatAReaderGets) {
    const auto [page, least] = GetParam();
    const std::string file = std::string(VELCLP_PAGES) + page;
    std::vector<Piece> pieces = piecesOf(file);
    const RunDirectory directory;
    // A quarter of the usual speed: a machine that is busy still sees a system on its way up.
    const SimulatorProcess simulator(directory, {"--speed", "0.25"});
    CommandSession session(directory, simulator.port());
    const bool update = std::getenv("VELCLP_UPDATE_TOUR") != nullptr;
    std::size_t lines = 0;
    for (Piece& piece : pieces) {
        if (piece.typed.empty() || piece.typed == "exit")
            continue;
        ++lines;
        const std::string answer = printed(session.answer(piece.typed));
        const bool same = withoutChance(piece.text) == withoutChance(answer);
        if (update && !same)
            piece.text = answer;
        else
            EXPECT_EQ(withoutChance(piece.text), withoutChance(answer)) << piece.typed;
    }
    EXPECT_GT(lines, least);
    if (!update)
        return;
    std::ofstream out(file);
    for (const Piece& piece : pieces)
        out << (piece.typed.empty() ? "" : PROMPT + piece.typed + "\n") << piece.text;
}

INSTANTIATE_TEST_SUITE_P(Pages, Tour,
                         testing::Values(std::pair("/docs/tour.md", std::size_t(40)),
                                         std::pair("/README.md", std::size_t(5))),
                         [](const auto& test) { return test.index == 0 ? "Tour" : "Readme"; });
