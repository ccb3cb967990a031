#include "Lsof_p.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace portolan {

struct EscapeRow
{
    std::string name;
    std::string printed;
};

class LsofEscape : public testing::TestWithParam<EscapeRow>
{};

TEST_P(LsofEscape, IsLsofsOwn)
{
    EXPECT_EQ(Lsof::escaped(GetParam().name), GetParam().printed);
}

// What lsof 4.95 printed for processes of these names.
INSTANTIATE_TEST_SUITE_P(
    Names, LsofEscape,
    testing::Values(EscapeRow{"node", "node"}, EscapeRow{"", ""}, EscapeRow{" a  b ", " a  b "},
                    EscapeRow{"next-server (v1", "next-server (v1"}, EscapeRow{"a^b%s\"'", "a^b%s\"'"},
                    EscapeRow{"a\nb", "a\\nb"}, EscapeRow{"a\tb", "a\\tb"}, EscapeRow{"a\rb", "a\\rb"},
                    EscapeRow{"a\bb", "a\\bb"}, EscapeRow{"a\fb", "a\\fb"}, EscapeRow{"a\\b", "a\\\\b"},
                    EscapeRow{"a\x01z", "a^Az"}, EscapeRow{"a\vb", "a^Kb"}, EscapeRow{"a\x1b[b", "a^[[b"},
                    EscapeRow{"a\x7fz", "a\\x7fz"}, EscapeRow{"caf\xc3\xa9", "caf\xc3\xa9"},
                    EscapeRow{"caf\xe9", "caf\\xe9"}, EscapeRow{"\xff\xfe", "\\xff\\xfe"},
                    EscapeRow{"\xc3", "\\xc3"}, EscapeRow{"\xe6\x97\xa5z", "\xe6\x97\xa5z"},
                    EscapeRow{"\xe6\x97z", "\\xe6\\x97z"}, EscapeRow{"a\xc2\x85z", "a\\xc2\\x85z"},
                    EscapeRow{"\xed\xa0\x80x", "\\xed\\xa0\\x80x"},
                    EscapeRow{"\xe2\x80\x8bx", "\xe2\x80\x8bx"},
                    EscapeRow{"\xee\x80\x80x", "\xee\x80\x80x"}));

struct AddressRow
{
    const char *name;
    bool isIpv6;
    std::array<std::uint8_t, 16> address;
    const char *printed;
};

class LsofSocketName : public testing::TestWithParam<AddressRow>
{};

TEST_P(LsofSocketName, IsLsofsOwn)
{
    const ListeningSocket socket{.isIpv6 = GetParam().isIpv6, .address = GetParam().address, .port = 3000};
    EXPECT_EQ(Lsof::socketName(socket), GetParam().printed);
}

INSTANTIATE_TEST_SUITE_P(
    Addresses, LsofSocketName,
    testing::Values(
        AddressRow{"any", false, {}, "*:3000"}, AddressRow{"any6", true, {}, "*:3000"},
        AddressRow{"loopback", false, {127, 0, 0, 1}, "127.0.0.1:3000"},
        AddressRow{"otherLoopback", false, {127, 0, 0, 2}, "127.0.0.2:3000"},
        AddressRow{"host", false, {192, 168, 1, 5}, "192.168.1.5:3000"},
        AddressRow{"loopback6", true, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}, "[::1]:3000"},
        AddressRow{"mapped", true, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 255, 255, 127, 0, 0, 1}, "127.0.0.1:3000"},
        AddressRow{"mappedAny", true, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 255, 255, 0, 0, 0, 0}, "*:3000"},
        AddressRow{"compatible", true, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 2, 3, 4}, "[::1.2.3.4]:3000"},
        AddressRow{
            "linkLocal", true, {0xfe, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}, "[fe80::1]:3000"},
        AddressRow{
            "longest",
            true,
            {0x20, 1, 0xd, 0xb8, 0x11, 0x11, 0x22, 0x22, 0x33, 0x33, 0x44, 0x44, 0x55, 0x55, 0x66, 0x66},
            "[2001:db8:1111:2222:3333:4444:5555:6666]:3000"}),
    [](const auto &row) { return row.param.name; });

TEST(LsofListing, HasOneRecordPerDescriptorInOrder)
{
    const std::vector<ListeningSocket> sockets = {
        {.inode = 7, .address = {127, 0, 0, 1}, .port = 3000},
        {.inode = 9, .isIpv6 = true, .port = 8080, .pending = 3},
    };
    const std::vector<SocketOwner> owners = {
        {.pid = 12, .command = "next-server (v1", .descriptors = {{3, 9}, {4, 7}, {5, 9}}},
        {.pid = 40, .command = "", .descriptors = {{0, 7}}},
    };
    EXPECT_EQ(Lsof::listing(owners, sockets), "p12\ncnext-server (v1\n"
                                              "PTCP\nn*:8080\nTST=LISTEN\nTQR=3\nTQS=0\n"
                                              "PTCP\nn127.0.0.1:3000\nTST=LISTEN\nTQR=0\nTQS=0\n"
                                              "PTCP\nn*:8080\nTST=LISTEN\nTQR=3\nTQS=0\n"
                                              "p40\nc\n"
                                              "PTCP\nn127.0.0.1:3000\nTST=LISTEN\nTQR=0\nTQS=0\n");
    EXPECT_EQ(Lsof::listing({}, sockets), "");
}

TEST(LsofExecutableName, IsTheLinksLastPart)
{
    EXPECT_EQ(Lsof::executableName("/usr/bin/node"), "node");
    EXPECT_EQ(Lsof::executableName("/usr/bin/node (deleted)"), "node");
    EXPECT_EQ(Lsof::executableName("/opt/my tools/node 24"), "node 24");
    EXPECT_EQ(Lsof::executableName("node"), "node");
    EXPECT_EQ(Lsof::executableName(""), "");
}

} // namespace portolan
