// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace portolan {

/// Lays out the help of both programs. CLI11's own layout differs between its versions.
class HelpFormatter : public CLI::Formatter
{
public:
    /// The help of `app`, called `name`: its description, usage, operands, options and commands.
    std::string make_help(const CLI::App *app, std::string name, CLI::AppFormatMode /*mode*/) const override
    {
        const auto operands = app->get_options([](const CLI::Option *o) { return o->get_positional(); });
        const auto options = app->get_options([](const CLI::Option *o) { return o->nonpositional(); });
        const auto commands = app->get_subcommands([](const CLI::App *) { return true; });

        std::string usage = "Usage: " + name + " [OPTIONS]";
        for (const CLI::Option *operand : operands)
            usage += ' ' + make_option_usage(operand);
        if (!commands.empty())
            usage += " [COMMAND]";

        std::string commandLines = commands.empty() ? "" : "\nCommands:\n";
        for (const CLI::App *command : commands)
            commandLines += line(command->get_name(), command->get_description());
        return app->get_description() + '\n' + usage + '\n' + section("Positionals", operands) +
               section("Options", options) + commandLines + '\n';
    }

private:
    [[nodiscard]] std::string section(const std::string &title,
                                      const std::vector<const CLI::Option *> &options) const
    {
        std::string lines = options.empty() ? "" : '\n' + title + ":\n";
        for (const CLI::Option *option : options) {
            const std::string name = make_option_name(option, option->get_positional());
            // Which other options one excludes is left to the error message.
            const std::string value = make_option_opts(option);
            lines += line(name + value.substr(0, value.find(" Excludes:")), option->get_description());
        }
        return lines;
    }

    static std::string line(const std::string &name, const std::string &description)
    {
        constexpr size_t column = 30;
        const std::string start = "  " + name;
        const std::string gap =
            start.size() < column ? std::string(column - start.size(), ' ') : '\n' + std::string(column, ' ');
        return start + gap + description + '\n';
    }
};

} // namespace portolan
