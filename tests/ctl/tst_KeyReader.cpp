#include "KeyReader.h"

#include <gtest/gtest.h>

#include <vector>

namespace portolan {

namespace {

std::vector<Key> keysOf(QByteArrayView typed)
{
    KeyReader reader;
    std::vector<Key> keys;
    for (const char character : typed) {
        if (const auto key = reader.read(character))
            keys.push_back(*key);
    }
    return keys;
}

using Keys = std::vector<Key>;

} // namespace

TEST(KeyReader, KnowsLetters)
{
    EXPECT_EQ(keysOf("jkqQ"), Keys({Key::down, Key::up, Key::quit, Key::quit}));
    EXPECT_EQ(keysOf("xJ[OA~5 \x01\xc3\xa4"), Keys());
}

TEST(KeyReader, KnowsWhatTerminalsSendForTheOthers)
{
    EXPECT_EQ(keysOf("\x1b[A\x1b[B\x1bOA\x1bOB"), Keys({Key::up, Key::down, Key::up, Key::down}));
    EXPECT_EQ(keysOf("\x1b[5~\x1b[6~"), Keys({Key::pageUp, Key::pageDown}));
    EXPECT_EQ(keysOf("\x1b[H\x1bOH\x1b[1~\x1b[7~"), Keys(4, Key::home));
    EXPECT_EQ(keysOf("\x1b[F\x1bOF\x1b[4~\x1b[8~"), Keys(4, Key::end));
}

TEST(KeyReader, PassesOverOtherSequencesAsAWhole)
{
    // Delete, F5, Control-Up, a mouse report: none of them is the q or the k in it.
    EXPECT_EQ(keysOf("\x1b[3~\x1b[15~\x1b[1;5A\x1b[<0;1;1Mj"), Keys({Key::down}));
    EXPECT_EQ(keysOf("\x1b[12q\x1bOkj"), Keys({Key::down}));
}

TEST(KeyReader, LetsAnEscapeSwallowNothing)
{
    EXPECT_EQ(keysOf("\x1bq"), Keys({Key::quit}));
    EXPECT_EQ(keysOf("\x1b\x1b[A"), Keys({Key::up}));
    EXPECT_EQ(keysOf("\x1b[\x1b[A"), Keys({Key::up}));
    EXPECT_EQ(keysOf("\x1b[1\nj"), Keys({Key::down}));
}

} // namespace portolan
