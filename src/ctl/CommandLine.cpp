#include "CommandLine.h"

#include "TerminalText.h"

#include <algorithm>
#include <array>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

using Error = CommandLine::Error;
using Result = std::variant<CommandLine, Error>;

struct OptionRow
{
    QLatin1StringView name;
    CommandShape::Option option;
    QLatin1StringView value; // what its value is called; empty for an option without one
};

constexpr std::array<OptionRow, 4> options{{
    {"--json"_L1, CommandShape::Json, {}},
    {"--no-probe"_L1, CommandShape::NoProbe, {}},
    {"--search"_L1, CommandShape::Search, "a text"_L1},
    {"--sort"_L1, CommandShape::Sort, "port, name, status or uptime"_L1},
}};

// A piece of the command line as messages show it: what was typed may be anything.
QString quoted(QStringView text)
{
    return u'\'' + TerminalText::harmless(text) + u'\'';
}

/// Reads one command line from left to right.
class Reader
{
public:
    Reader(const QStringList &arguments, std::span<const CommandShape> commands)
        : m_arguments(arguments)
        , m_commands(commands)
    {}

    Result read()
    {
        while (!m_error && m_next < m_arguments.size() && !m_line.help && !m_line.version) {
            const QString argument = m_arguments[m_next++];
            if (m_operandsOnly || !argument.startsWith(u'-') || argument == "-"_L1)
                readWord(argument);
            else if (argument == "--"_L1)
                m_operandsOnly = true;
            else
                readOption(argument);
        }
        if (!m_line.help && !m_line.version)
            checkWhole();
        if (m_error)
            return *m_error;
        return m_line;
    }

private:
    void fail(const QString &message) { m_error = m_error.value_or(Error{message}); }

    void readWord(const QString &word)
    {
        if (m_command) {
            m_line.operands.append(word);
            return;
        }
        const auto found = std::ranges::find(m_commands, word, &CommandShape::name);
        if (found == m_commands.end())
            return fail(u"unknown command %1"_s.arg(quoted(word)));
        m_command = &*found;
        m_line.command = word;
    }

    void readOption(const QString &argument)
    {
        const qsizetype equals = argument.indexOf(u'=');
        const QString written = argument.left(equals);
        const QString name = written == "-h"_L1 ? u"--help"_s : written;
        const std::optional<QString> value =
            equals < 0 ? std::nullopt : std::optional(argument.sliced(equals + 1));
        if (name == "--help"_L1 || name == "--version"_L1) {
            if (value)
                return fail(u"option '%1' takes no value"_s.arg(name));
            (name == "--help"_L1 ? m_line.help : m_line.version) = true;
            return;
        }
        const auto row = std::ranges::find(options, name, &OptionRow::name);
        if (row == options.end())
            return fail(u"unknown option %1"_s.arg(quoted(name)));
        m_given.append(row);
        if (row->value.isEmpty())
            return value ? fail(u"option '%1' takes no value"_s.arg(name)) : apply(row->option, {});
        if (!value && m_next == m_arguments.size())
            return fail(u"option '%1' needs a value: %2"_s.arg(name, row->value));
        apply(row->option, value ? *value : m_arguments[m_next++]);
    }

    void apply(CommandShape::Option option, const QString &value)
    {
        switch (option) {
        case CommandShape::Json:
            m_line.json = true;
            break;
        case CommandShape::NoProbe:
            m_line.probe = false;
            break;
        case CommandShape::Search:
            m_line.search = value;
            break;
        case CommandShape::Sort:
            m_line.sort = SortOrder::fromRawValue(value);
            if (!m_line.sort)
                fail(u"option '--sort' takes port, name, status or uptime, not %1"_s.arg(quoted(value)));
            break;
        }
    }

    // What can be judged only when the command is known; the first command is the one meant where none is
    // named.
    void checkWhole()
    {
        const CommandShape &command = m_command ? *m_command : m_commands.front();
        for (const OptionRow *row : m_given) {
            if (!command.options.testFlag(row->option))
                fail(u"'%1' does not take option '%2'"_s.arg(command.name, row->name));
        }
        const qsizetype count = m_line.operands.size();
        const bool takesNone = command.operands == CommandShape::Operands::none;
        if (count == 0 && !takesNone)
            fail(u"'%1' needs an operand: %2"_s.arg(command.name, command.operandName));
        if (count > 0 && takesNone)
            fail(u"'%1' takes no operand: %2"_s.arg(command.name, quoted(m_line.operands.front())));
        if (count > 1 && command.operands == CommandShape::Operands::one)
            fail(u"'%1' takes one operand only: %2"_s.arg(command.name, quoted(m_line.operands[1])));
    }

    const QStringList &m_arguments;
    const std::span<const CommandShape> m_commands;
    qsizetype m_next = 0;
    bool m_operandsOnly = false;
    const CommandShape *m_command = nullptr;
    QList<const OptionRow *> m_given;
    CommandLine m_line;
    std::optional<Error> m_error;
};

} // namespace

std::variant<CommandLine, CommandLine::Error> CommandLine::parse(const QStringList &arguments,
                                                                 std::span<const CommandShape> commands)
{
    return Reader(arguments, commands).read();
}

} // namespace portolan
