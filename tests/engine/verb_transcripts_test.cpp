// Whole sessions of the host program against the simulator, compared byte for byte with the files
// of the folder transcripts. VELCLP_UPDATE_TRANSCRIPTS=1 writes the answers into the files instead,
// to be read before they are kept.
#include "tests/engine/command_session.h"
#include "tests/engine/transcript.h"
#include "tests/support/simulator_process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

const std::filesystem::path FOLDER = VELCLP_TRANSCRIPTS;

std::vector<std::string> transcriptNames() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(FOLDER))
        names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

void arrange(const SimulatorProcess& simulator, const std::string& text) {
    std::istringstream words(text);
    std::string what, resource, body;
    words >> what >> resource >> std::ws;
    std::getline(words, body);
    if (what == "post")
        simulator.post(resource, body);
}

// A finished clpxml document whose command line holds no markup is well-formed.
void expectWellFormed(const RunDirectory& directory, const std::string& line,
                      const std::string& bytes) {
    const std::string::size_type begin = bytes.find("<?xml");
    if (begin == std::string::npos || bytes.find("</response>") == std::string::npos ||
        line.find_first_of("<>&") != std::string::npos)
        return;
    directory.write("answer.xml", bytes.substr(begin));
    ChildProcess xmllint({"/usr/bin/xmllint", "--noout", directory.file("answer.xml")});
    EXPECT_EQ(0, xmllint.wait()) << line << "\n" << xmllint.errors();
}

class Transcripts : public testing::TestWithParam<std::string> {};

} // namespace

TEST_P(Transcripts, SayWhatASessionAnswers) {
    const std::string file = FOLDER / (GetParam() + ".txt");
    Transcript transcript(file);
    const RunDirectory directory;
    const SimulatorProcess simulator(directory, transcript.arrangements("simulator"));
    SessionOptions options;
    for (const std::string& privileges : transcript.arrangements("privileges"))
        options.privileges = privileges;
    CommandSession session(directory, simulator.port(), options);
    const bool update = std::getenv("VELCLP_UPDATE_TRANSCRIPTS") != nullptr;
    for (TranscriptStep& step : transcript.steps) {
        if (step.kind == TranscriptStep::ARRANGE)
            arrange(simulator, step.text);
        if (step.kind != TranscriptStep::COMMAND)
            continue;
        const std::string bytes = session.answer(step.text);
        expectWellFormed(directory, step.text, bytes);
        if (update)
            step.answer = inNotation(bytes);
        else
            EXPECT_EQ(step.answer, inNotation(bytes)) << file << ": " << step.text;
    }
    if (update)
        std::ofstream(file) << transcript.text();
}

INSTANTIATE_TEST_SUITE_P(Session, Transcripts, testing::ValuesIn(transcriptNames()),
                         [](const auto& test) { return test.param; });
