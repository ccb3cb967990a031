#include "CommandLine.h"

#include "HelpFormatter.h"
#include "TerminalText.h"

#include <CLI/CLI.hpp>

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

using Command = CommandLine::Command;

/// The options and commands of portolanctl, and what was given of them.
class Parser
{
public:
    Parser()
    {
        m_app.formatter(std::make_shared<HelpFormatter>());
        m_app.set_help_flag("-h,--help", "print this and exit");
        m_app.set_version_flag("--version", "portolanctl " PORTOLAN_VERSION, "print the version and exit");
        m_app.require_subcommand(0, 1);
        const std::vector<CLI::Option *> listOptions = addListOptions(&m_app);

        addListOptions(
            add(Command::List, "list", "the servers of this machine, once; also without a command"));
        addListOptions(add(Command::Watch, "watch", "the same list, kept up to date until q or Control-C"));
        CLI::App *stop = add(Command::Stop, "stop", "stop the servers on these ports or with these ids");
        stop->add_option("PORT|ID", m_operands, "a port, or an id: process-port")->type_name("")->required();
        CLI::App *open = add(Command::Open, "open", "open the server on this port in the browser");
        open->add_option("PORT", m_operand, "a port")->type_name("")->required();
        for (CLI::Option *option : listOptions) {
            stop->excludes(option);
            open->excludes(option);
        }
    }

    /// Throws a CLI::ParseError where the help or the version is asked for or the arguments are refused.
    CommandLine parse(int argc, const char *const *argv)
    {
        m_app.parse(reversed(argc, argv));
        m_line.command = command().value_or(Command::List);
        m_line.sort = SortOrder::fromRawValue(QString::fromStdString(m_sort));
        m_line.search = QString::fromStdString(m_search);
        m_line.probe = !m_skipProbe;
        if (m_line.command == Command::Open)
            m_operands = {m_operand};
        for (const std::string &operand : m_operands)
            readOperand(operand);
        return m_line;
    }

    [[nodiscard]] QString help() const { return QString::fromStdString(m_app.help()); }

    /// What is wrong with the first argument that nothing takes.
    [[nodiscard]] QString unexpectedArgument() const
    {
        const QString argument = QString::fromStdString(m_app.remaining(true).front());
        if (const auto given = command())
            return u"'%1' does not take '%2'"_s.arg(
                QString::fromStdString(m_commands[size_t(*given)]->get_name()), argument);
        return (argument.startsWith(u'-') ? u"unknown option '%1'"_s : u"unknown command '%1'"_s)
            .arg(argument);
    }

private:
    CLI::App *add(Command command, const char *name, const char *summary)
    {
        return m_commands[size_t(command)] = m_app.add_subcommand(name, summary)->group("Commands");
    }

    std::vector<CLI::Option *> addListOptions(CLI::App *command)
    {
        std::vector<std::string> orders;
        for (const SortOrder order : SortOrder::allCases())
            orders.push_back(order.rawValue().toStdString());
        return {
            command->add_flag("--json", m_line.json,
                              "print an array of JSON objects; with watch, one array per line and refresh"),
            command->add_flag("--no-probe", m_skipProbe, "do not ask the servers whether they answer"),
            command
                ->add_option("--search", m_search,
                             "only servers with TEXT in their name, port, folder or framework")
                ->take_last(),
            command
                ->add_option("--sort", m_sort, "by port, name, status or uptime instead of the stored order")
                ->option_text("ORDER")
                ->check(CLI::IsMember(orders))
                ->take_last(),
        };
    }

    // CLI11 takes the arguments in reverse order, and an option that ends in "=" for one whose value comes
    // next.
    static std::vector<std::string> reversed(int argc, const char *const *argv)
    {
        std::vector<std::string> arguments;
        for (int i = argc - 1; i > 0; --i) {
            const std::string argument = argv[i];
            if (argument == "--search=")
                arguments.insert(arguments.end(), {"", "--search"});
            else
                arguments.push_back(argument);
        }
        return arguments;
    }

    [[nodiscard]] std::optional<Command> command() const
    {
        for (size_t i = 0; i < m_commands.size(); ++i) {
            if (m_commands[i]->count() > 0)
                return Command(i);
        }
        return std::nullopt;
    }

    void readOperand(const std::string &text)
    {
        const auto operand = ServiceOperand::parse(QString::fromStdString(text));
        if (m_line.command == Command::Open && (!operand || operand->pid))
            throw CLI::ValidationError("'" + text + "' is no port");
        if (!operand)
            throw CLI::ValidationError("'" + text + "' is neither a port nor an id such as 4242-3000");
        m_line.operands.append(*operand);
    }

    CLI::App m_app{"Shows the dev servers of this machine.", "portolanctl"};
    std::array<CLI::App *, 4> m_commands{};
    CommandLine m_line;
    bool m_skipProbe = false;
    std::string m_search;
    std::string m_sort;
    std::string m_operand;
    std::vector<std::string> m_operands;
};

CommandLine::Reply refusal(const QString &message)
{
    return {.text = TerminalText::harmless(message), .isError = true};
}

} // namespace

std::variant<CommandLine, CommandLine::Reply> CommandLine::parse(int argc, const char *const *argv)
{
    Parser parser;
    try {
        return parser.parse(argc, argv);
    } catch (const CLI::CallForHelp &) {
        return Reply{.text = parser.help()};
    } catch (const CLI::CallForVersion &version) {
        return Reply{.text = QString::fromUtf8(version.what()) + u'\n'};
    } catch (const CLI::ExtrasError &) {
        return refusal(parser.unexpectedArgument());
    } catch (const CLI::ArgumentMismatch &) {
        // Only a last argument can lack its value: others take the one behind them.
        return refusal(u"option '%1' needs a value"_s.arg(QString::fromLocal8Bit(argv[argc - 1])));
    } catch (const CLI::ParseError &error) {
        return refusal(QString::fromUtf8(error.what()));
    }
}

} // namespace portolan
