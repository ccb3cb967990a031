// SPDX-License-Identifier: MIT
#include "CommandLine.h"

#include "HelpFormatter.h"
#include "TerminalText.h"

#include <CLI/CLI.hpp>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

using Command = CommandLine::Command;

constexpr double maxTimeout = 1e6; // seconds: longer than any wait

/// The options and commands of portolanctl, and their parsed values.
class Parser
{
public:
    Parser()
    {
        m_app.formatter(std::make_shared<HelpFormatter>());
        m_app.set_help_flag("-h,--help", "print this and exit");
        m_app.set_version_flag("--version", "portolanctl " PORTOLAN_VERSION, "print the version and exit");
        m_app.require_subcommand(0, 1);
        std::vector<CLI::Option *> listOptions = addListOptions(&m_app);
        listOptions.push_back(addHosts(&m_app));

        CLI::App *list =
            add(Command::List, "list", "the servers of this machine, once; also without a command");
        addOperands(list, "PORT|ID|NAME", "only the servers on this port, with this id or of this name");
        addListOptions(list);
        CLI::App *watch =
            add(Command::Watch, "watch", "the same list, kept up to date, with keys to act on it");
        addListOptions(watch);
        CLI::App *wait = add(Command::Wait, "wait", "wait until these ports answer HTTP");
        addOperands(wait, "PORT", "a port")->required();
        wait->add_option("--timeout", m_timeout, "give up after so many seconds")
            ->option_text("SECONDS")
            ->check(CLI::Range(0.0, maxTimeout))
            ->take_last();
        CLI::App *stop =
            add(Command::Stop, "stop", "stop the servers on these ports, with these ids or names");
        addOperands(stop, "PORT|ID|NAME", "a port, an id (process-port), or a name or its start")->required();
        CLI::App *open = add(Command::Open, "open", "open the server on this port in the browser");
        open->add_option("PORT", m_operand, "a port")->type_name("")->required();
        for (CLI::App *command : {list, watch, wait, stop, open})
            addHosts(command);
        for (CLI::Option *option : listOptions) {
            for (CLI::App *command : {wait, stop, open})
                command->excludes(option);
        }
    }

    /// Throws a CLI::ParseError if the help or the version is requested or the arguments are invalid.
    CommandLine parse(int argc, const char *const *argv)
    {
        m_app.parse(reversed(argc, argv));
        m_line.sort = SortOrder::fromRawValue(QString::fromStdString(m_sort));
        m_line.search = QString::fromStdString(m_search);
        m_line.probe = !m_skipProbe;
        if (m_timeout && std::isnan(*m_timeout)) // which is in every range of CLI11's
            throw CLI::ValidationError("--timeout: nan is no number of seconds");
        if (m_timeout)
            m_line.timeout = std::chrono::milliseconds(std::llround(*m_timeout * 1000));
        if (m_line.command == Command::Open)
            m_operands = {m_operand};
        for (const std::string &operand : m_operands)
            readOperand(operand);
        for (const std::string &host : m_hosts)
            readHost(QString::fromStdString(host));
        return m_line;
    }

    [[nodiscard]] QString help() const { return QString::fromStdString(m_app.help()); }

    /// The error message about the first unexpected argument.
    [[nodiscard]] QString unexpectedArgument() const
    {
        const QString argument = QString::fromStdString(m_app.remaining(true).front());
        if (const auto given = m_app.get_subcommands(); !given.empty())
            return u"'%1' does not take '%2'"_s.arg(QString::fromStdString(given.front()->get_name()),
                                                    argument);
        return (argument.startsWith(u'-') ? u"unknown option '%1'"_s : u"unknown command '%1'"_s)
            .arg(argument);
    }

private:
    CLI::App *add(Command command, const char *name, const char *summary)
    {
        CLI::App *added = m_app.add_subcommand(name, summary)->group("Commands");
        added->preparse_callback([this, command](size_t) { m_line.command = command; });
        return added;
    }

    CLI::Option *addOperands(CLI::App *command, const char *name, const char *description)
    {
        return command->add_option(name, m_operands, description)->type_name("");
    }

    CLI::Option *addHosts(CLI::App *command)
    {
        return command
            ->add_option("--host", m_hosts, "not this machine but NAME, a host that ssh knows; repeatable")
            ->option_text("NAME")
            ->allow_extra_args(false);
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

    // CLI11 takes the arguments in reverse order, and treats an option that ends in "=" as one whose value
    // comes next.
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

    void readOperand(const std::string &text)
    {
        const auto operand = ServiceOperand::parse(QString::fromStdString(text));
        const bool takesPortsOnly = m_line.command == Command::Open || m_line.command == Command::Wait;
        if (takesPortsOnly && (!operand || operand->pid || !operand->name.isEmpty()))
            throw CLI::ValidationError("'" + text + "' is no port");
        if (!operand)
            throw CLI::ValidationError("'" + text +
                                       "' is neither a port, an id such as 4242-3000 nor a name");
        m_line.operands.append(*operand);
    }

    // ssh would treat a name that begins with a hyphen as an option.
    void readHost(const QString &host)
    {
        if (host.isEmpty() || host.startsWith(u'-'))
            throw CLI::ValidationError("'" + host.toStdString() + "' is no host");
        if (!m_line.hosts.contains(host))
            m_line.hosts.append(host);
        if (m_line.command == Command::Open && m_line.hosts.size() > 1)
            throw CLI::ValidationError("'open' takes one host");
    }

    CLI::App m_app{"Shows the dev servers of this machine.", "portolanctl"};
    CommandLine m_line;
    bool m_skipProbe = false;
    std::string m_search;
    std::string m_sort;
    std::string m_operand;
    std::vector<std::string> m_operands;
    std::vector<std::string> m_hosts;
    std::optional<double> m_timeout;
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
        // Only the last argument can lack its value: others take the argument that follows.
        return refusal(u"option '%1' needs a value"_s.arg(QString::fromLocal8Bit(argv[argc - 1])));
    } catch (const CLI::ParseError &error) {
        return refusal(QString::fromUtf8(error.what()));
    }
}

} // namespace portolan
