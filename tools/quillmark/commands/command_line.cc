#include "commands/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <set>
#include <utility>

#include "commands/suggestion.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

[[noreturn]] void ThrowWrongUsage(const std::string& what) {
  throw CLI::ParseError(what, CLI::ExitCodes::ExtrasError);
}

// For a word that is no command.
[[noreturn]] void ThrowNoCommand(const CLI::App& app, const std::string& word) {
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
  std::string suggestion = Suggestion(word, names);
  std::error_code ignored;
  const auto path = app.get_parent() == nullptr ? ShellWord(word) : std::nullopt;
  if (path && std::filesystem::exists(word, ignored)) {
    suggestion = "; did you mean quillmark identify " + *path + '?';
  }
  ThrowWrongUsage("no command " + Printable(word) +
                  (suggestion.empty() ? "; see: quillmark help" : suggestion));
}

bool IsFlag(const CLI::Option& option) { return option.get_items_expected_max() == 0; }

// Checks the words of a command line one after another, and brings them into an order that the parser always
// accepts: options with their values, "--", and all else after it.
class CommandWords {
 public:
  CommandWords(CLI::App& app, const std::vector<std::string>& words)
      : app_(app), command_(&app), words_(words) {}

  // Nothing is looked at after a request for help or for the version.
  std::vector<std::string> InOrder() {
    bool may_be_option = true;  // until "--"
    while (!asks_for_help_ && next_ < words_.size()) {
      const std::string& word = words_[next_++];
      if (word == "--" && may_be_option) {
        may_be_option = false;
      } else if (word.size() > 1 && word.front() == '-' && may_be_option) {
        TakeOption(word);
      } else if (!command_->get_subcommands({}).empty()) {
        TakeCommand(word);
      } else {
        TakeOther(word);
      }
    }
    if (!asks_for_help_ && command_ != &app_ && !command_->get_subcommands({}).empty()) {
      ThrowWrongUsage("no command given; see: quillmark help " + name());
    }
    if (!others_.empty()) ordered_.emplace_back("--");
    ordered_.insert(ordered_.end(), others_.begin(), others_.end());
    return ordered_;
  }

  // The command, for messages; the program before one was named.
  std::string name() const {
    std::string name;
    for (const CLI::App* command = command_; command != &app_; command = command->get_parent()) {
      name = command->get_name() + (name.empty() ? "" : ' ' + name);
    }
    return name;
  }

 private:
  void TakeCommand(const std::string& word) {
    const std::string& name = CommandNamed(*command_, word).get_name();
    command_ = command_->get_subcommand(name);
    ordered_.push_back(name);
    for (const CLI::Option* option : command_->get_options()) {
      if (option->get_positional()) room_ += option->get_items_expected_max();
    }
  }

  void TakeOther(const std::string& word) {
    if (static_cast<int>(others_.size()) >= room_) ThrowWrongUsage("one word too many: " + Printable(word));
    others_.push_back(word);
  }

  void TakeOption(const std::string& word) {
    ordered_.push_back(word);
    if (word.starts_with("--")) return TakeLongOption(word);
    for (std::size_t i = 1; i < word.size(); ++i) {
      const std::string letter(1, word[i]);
      CLI::Option* const option =
          Find(word, [&](const CLI::Option& each) { return each.check_sname(letter); });
      if (!IsFlag(*option)) return TakeValue(*option, '-' + letter, word.substr(i + 1));
    }
  }

  void TakeLongOption(const std::string& word) {
    const std::size_t equals = word.find('=');
    const std::string name = word.substr(0, equals);
    CLI::Option* const option =
        Find(name, [&](const CLI::Option& each) { return each.check_lname(name.substr(2)); });
    if (IsFlag(*option)) {
      if (equals != std::string::npos) ThrowWrongUsage(name + " takes no value");
    } else if (equals != std::string::npos && equals + 1 == word.size()) {
      ThrowWrongUsage(name + " needs a value");
    } else {
      TakeValue(*option, name, equals == std::string::npos ? "" : word.substr(equals + 1));
    }
  }

  template <typename Test>
  CLI::Option* Find(const std::string& word, Test test) {
    for (CLI::Option* option : command_->get_options()) {
      if (!test(*option)) continue;
      asks_for_help_ |= option == command_->get_help_ptr() || option == command_->get_version_ptr();
      return option;
    }
    ThrowNoOption(word, test);
  }

  template <typename Test>
  [[noreturn]] void ThrowNoOption(const std::string& word, Test test) const {
    std::vector<std::string> names;
    std::vector<std::string> commands;
    std::vector<const CLI::App*> all = std::as_const(app_).get_subcommands({});
    all.push_back(&app_);
    for (const CLI::App* command : all) {
      for (const CLI::Option* option : command->get_options()) {
        if (test(*option)) commands.push_back(command->get_name());
        if (command != command_ && command_ != &app_) continue;
        for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
      }
    }
    std::string advice = Suggestion(word, names);
    if (!commands.empty()) {
      advice = "; it belongs to " + CLI::detail::join(commands, ", ");
    } else if (advice.empty()) {
      advice = "; see: quillmark help" + (name().empty() ? "" : ' ' + name());
    }
    ThrowWrongUsage("no option " + Printable(word) + advice);
  }

  // `joined` is the value in the word of the option itself; without one it is the next word.
  void TakeValue(CLI::Option& option, const std::string& name, std::string joined) {
    if (joined.empty()) {
      if (next_ == words_.size()) ThrowWrongUsage(name + " needs a value");
      joined = words_[next_++];
      ordered_.push_back(joined);
    }
    if (option.get_items_expected_max() == 1 && !given_.insert(&option).second) {
      ThrowWrongUsage(name + " is given twice");
    }
    std::vector<std::string> parts{joined};
    if (option.get_delimiter() != '\0') parts = CLI::detail::split(joined, option.get_delimiter());
    for (const std::string& part : parts) {
      if (const std::string fault = Fault(option, part); !fault.empty()) ThrowWrongUsage(name + ": " + fault);
    }
  }

  // What the option's own check says of a value.
  static std::string Fault(CLI::Option& option, std::string value) {
    try {
      return (*option.get_validator(0))(value);
    } catch (const CLI::OptionNotFound&) {
      return {};  // it takes any value
    }
  }

  CLI::App& app_;
  CLI::App* command_;  // app_ until one is named
  const std::vector<std::string>& words_;
  std::size_t next_ = 0;
  int room_ = 0;  // how many words the command takes that are no options
  bool asks_for_help_ = false;
  std::set<const CLI::Option*> given_;
  std::vector<std::string> ordered_, others_;
};

}  // namespace

const CLI::App& CommandNamed(const CLI::App& of, const std::string& name) {
  const std::string wanted = name == "catalog" ? "catalogue" : name;
  const auto found =
      of.get_subcommands([&](const CLI::App* command) { return command->get_name() == wanted; });
  if (found.empty()) ThrowNoCommand(of, name);
  return *found.front();
}

bool RunCommandLine(CLI::App& app, const std::vector<std::string>& words) {
  CommandWords looked_at(app, words);
  try {
    std::vector<std::string> ordered = looked_at.InOrder();
    std::reverse(ordered.begin(), ordered.end());  // the parser takes them from the end
    app.parse(std::move(ordered));
    if (app.get_subcommands().empty()) ThrowWrongUsage("no command given; see: quillmark help");
  } catch (const CLI::Success& request) {
    app.exit(request);
  } catch (const CLI::ParseError& error) {
    const std::string command = looked_at.name();
    std::cerr << "quillmark" << (command.empty() ? "" : " ") << command << ": " << error.what() << '\n';
    return false;
  }
  return true;
}

}  // namespace quillmark::tool
