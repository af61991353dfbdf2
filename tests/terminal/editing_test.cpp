// Editing on a real terminal at several widths: what the screen shows after each key, and that the
// line which is then run is the one shown.
#include "tests/terminal/operators_terminal.h"

namespace {

// A line that is answered with itself, of that length; each letter tells its place.
std::string line(std::size_t length) {
    std::string text = "help -o format=keyword ";
    while (text.size() < length)
        text += static_cast<char>('a' + text.size() % 26);
    return text;
}

std::string inserted(std::string text, std::size_t at, const std::string& what) {
    return text.insert(at, what);
}

std::string without(std::string text, std::size_t at, std::size_t count = 1) {
    return text.erase(at, count);
}

class Editing : public OperatorsTerminal {
protected:
    PtySession& startAt(int columns) {
        PtySession::Options options;
        options.columns = width = columns;
        return start(options);
    }
    // The rows of prompt and text.
    Rows rows(const std::string& text) const {
        const std::string all = "-> " + text;
        Rows cut;
        for (std::size_t at = 0; at < all.size(); at += static_cast<std::size_t>(width)) {
            cut.push_back(all.substr(at, static_cast<std::size_t>(width)));
            cut.back().erase(cut.back().find_last_not_of(' ') + 1);
        }
        return cut;
    }
    // With the cursor.
    Rows shown(const std::string& text, std::size_t cursor) const {
        Rows marked = rows(text);
        const std::size_t row = (cursor + 3) / static_cast<std::size_t>(width);
        const std::size_t column = (cursor + 3) % static_cast<std::size_t>(width);
        marked.resize(std::max(marked.size(), row + 1));
        marked[row].resize(std::max(marked[row].size(), column), ' ');
        marked[row].insert(column, 1, '|');
        return marked;
    }
    Rows shown(const std::string& text) const { return shown(text, text.size()); }
    void expectShown(const Rows& expected) { EXPECT_EQ(session->viewBecomes(expected), expected); }
    // Ends the line, which must be the one that runs.
    void expectRun(const std::string& text) {
        session->type("\r");
        session->expect("commandline=" + text + "\n");
        session->prompt();
    }
    // Also stands as it was above its answer.
    void expectRunBelow(const std::string& text) {
        session->type("\r");
        session->expect("commandline=" + text + "\n");
        Rows above = session->view();
        above.resize(rows(text).size());
        EXPECT_EQ(above, rows(text));
        session->prompt();
    }
    // The length at which prompt and line end at the right edge.
    std::size_t edge() const {
        return static_cast<std::size_t>(width == 20 ? 2 * width : width) - 3;
    }

    int width = 80;
};

class EditingAtWidth : public Editing, public ::testing::WithParamInterface<int> {
protected:
    void SetUp() override { startAt(GetParam()); }
};

TEST_P(EditingAtWidth, ShowsTheTextAndTheCursorAfterEveryKindOfKey) {
    const std::size_t e = edge();
    const std::size_t two = e + static_cast<std::size_t>(width); // both rows end at the edge
    const struct {
        const char* what;
        std::string keys, text;
        std::size_t cursor;
    } cases[] = {
        {"ends at the edge", line(e), line(e), e},
        {"ends behind the edge", line(e + 1), line(e + 1), e + 1},
        {"ends at the second edge", line(two), line(two), two},
        {"inserts up to the edge", line(e - 1) + times(5, LEFT) + "X",
         inserted(line(e - 1), e - 6, "X"), e - 5},
        {"inserts over the edge", line(e) + times(5, LEFT) + "XY", inserted(line(e), e - 5, "XY"),
         e - 3},
        {"inserts over two edges", line(two) + times(two - 25, LEFT) + "XY",
         inserted(line(two), 25, "XY"), 27},
        {"rubs out over the edge", line(e + 2) + times(4, RUBOUT), line(e - 2), e - 2},
        {"rubs out at the edge", line(e + 5) + times(5, LEFT) + RUBOUT, without(line(e + 5), e - 1),
         e - 1},
        {"pulls the next row up", line(e + 3) + times(e - 22, LEFT) + DEL, without(line(e + 3), 25),
         25},
        {"empties the last row", line(e + 3) + times(3, LEFT) + times(5, DEL), line(e), e},
        {"stays at the right end", line(e + 3) + times(4, RIGHT), line(e + 3), e + 3},
        {"stays at the left end", line(e + 3) + times(e + 9, LEFT), line(e + 3), 0},
        {"moves back over the edge", line(e + 3) + times(6, LEFT) + times(4, RIGHT), line(e + 3),
         e + 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        session->type(c.keys);
        expectShown(shown(c.text, c.cursor));
        expectRunBelow(c.text);
    }
    EXPECT_FALSE(session->screen().confused());
}

TEST_P(EditingAtWidth, RecallsEntriesOfAnyLengthAndRunsWhatIsMadeOfThem) {
    const std::string whole = line(edge() + static_cast<std::size_t>(width) + 4);
    const std::string atEdge = line(edge());
    for (const std::string& entry : {whole, std::string("version"), atEdge})
        session->answer(entry);
    session->type("unfinished");
    for (const auto& [key, entry] : {std::pair{UP, atEdge},
                                     {UP, std::string("version")},
                                     {UP, whole},
                                     {UP, whole},
                                     {DOWN, std::string("version")},
                                     {DOWN, atEdge},
                                     {DOWN, atEdge},
                                     {UP, std::string("version")},
                                     {UP, whole}}) {
        session->type(key);
        expectShown(shown(entry));
    }
    session->type(times(whole.size() - 30, LEFT) + "X" + RUBOUT + RUBOUT);
    expectShown(shown(without(whole, 29), 29));
    expectRunBelow(without(whole, 29));
    EXPECT_FALSE(session->screen().confused());
}

TEST_P(EditingAtWidth, RecallsAContinuedLineAsOne) {
    const std::string whole = line(edge() + 4);
    session->type(whole.substr(0, 8) + "`\r" + whole.substr(8, 15) + "`\r" + whole.substr(23));
    expectRun(whole);
    session->type(UP);
    expectShown(shown(whole));
    session->type(CTRL_C);
    session->prompt();

    session->type("cd `\rx" + UP);
    session->expect("cd `\nx\n");
    session->prompt();
    expectShown(shown(whole));
    expectRun(whole);
    EXPECT_FALSE(session->screen().confused());
}

INSTANTIATE_TEST_SUITE_P(Columns, EditingAtWidth, ::testing::Values(20, 80, 132),
                         [](const auto& test) { return std::to_string(test.param); });

TEST_F(Editing, KeysThatDeleteFollowTheTerminalsName) {
    enum : std::size_t { NOTHING, LEFTWARDS, AT_CURSOR };
    const char* const texts[] = {"abc", "ac", "ab"};
    const std::size_t cursors[] = {2, 1, 2};
    const struct {
        const char* terminal;
        std::size_t rubout, backspace, del;
    } cases[] = {
        {"xterm", LEFTWARDS, NOTHING, AT_CURSOR}, {"linux", LEFTWARDS, NOTHING, AT_CURSOR},
        {"XTERM", LEFTWARDS, NOTHING, AT_CURSOR}, {"vt100", AT_CURSOR, LEFTWARDS, NOTHING},
        {"ansi", AT_CURSOR, LEFTWARDS, NOTHING},  {"dumb", AT_CURSOR, NOTHING, NOTHING},
        {"", AT_CURSOR, LEFTWARDS, NOTHING},      {"nonsense\033[", AT_CURSOR, NOTHING, NOTHING},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.terminal);
        PtySession::Options options;
        options.environment["TERM"] = c.terminal;
        start(options);
        for (const auto& [key, effect] :
             {std::pair{RUBOUT, c.rubout}, {BACKSPACE, c.backspace}, {DEL, c.del}}) {
            session->type("abc" + LEFT + key);
            session->quiet(std::chrono::milliseconds(effect == NOTHING ? 20 : 0));
            expectShown(shown(texts[effect], cursors[effect]));
            giveUp();
        }
        // One such terminal sends two bytes at a line's end.
        session->type(c.terminal == std::string("XTERM") ? "exit\r\n" : "exit\r");
        EXPECT_EQ(session->wait(), 0);
        EXPECT_TRUE(session->isRestored());
    }
}

} // namespace
