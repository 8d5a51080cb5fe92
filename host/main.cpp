// The command line of scanhost.
#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>

#include "frame/pin.h"
#include "host/commands/commands.h"
#include "host/number.h"
#include "host/problems.h"

namespace {

using namespace scanhost;

constexpr int kFailed = 1;
constexpr int kRejected = 2;

// Files that are opened later must not take the numbers of standard streams that are closed.
void open_standard_streams() {
  int file = 0;
  while (file >= 0 && file <= STDERR_FILENO) file = open("/dev/null", O_RDWR);
  if (file >= 0) close(file);
}

// What was printed may still fail to reach a full disk.
int flushed(int status) {
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return status;
  std::fputs("scanhost: standard output cannot be written\n", stderr);
  return std::max(status, kFailed);
}

// What is wrong with the commands before the first option; empty if they exist.
std::string unknown_command(const CLI::App& app, int argc, char** argv) {
  const CLI::App* level = &app;
  for (int i = 1; i < argc && argv[i][0] != '-'; ++i) {
    std::vector<std::string> names;
    const CLI::App* next = nullptr;
    for (const CLI::App* command : level->get_subcommands([](const CLI::App*) { return true; })) {
      names.push_back(command->get_name());
      if (names.back() == argv[i]) next = command;
    }
    if (names.empty()) break;
    if (next == nullptr)
      return "there is no command '" + std::string(argv[i]) + "'; " + suggest(argv[i], names, "");
    level = next;
  }
  return {};
}

void add_program(CLI::App& command, ScanOptions& options) {
  command.add_option("PROGRAM", options.program, "control program (TOML)")->required();
  command.add_option("--library", options.library, "the block library, instead of searching it")
      ->type_name("FILE");
}

void add_scan(CLI::App& command, ScanOptions& options) {
  add_program(command, options);
  CLI::Option* cycles =
      command.add_option("--cycles", options.cycles, "end after N scans")
          ->type_name("N")
          ->check(CLI::Range(std::uint64_t{1}, std::uint64_t{1} << 62, "at least 1"));
  command
      .add_option_function<std::string>(
          "--for",
          [&options](const std::string& text) {
            options.length = parse_duration(text);
            if (!options.length || *options.length == Duration::zero())
              throw CLI::ValidationError(
                  "--for", "'" + text + "' is no positive duration up to 36500d; write " +
                               kDurationExamples);
          },
          "end after this time: 10m, 1h30m, 1d")
      ->type_name("DURATION")
      ->excludes(cycles);
  command.add_flag("--stats", options.stats, "print how long scans and blocks took");
  command.add_option("--stats-json", options.stats_json, "write the same to this file as JSON")
      ->type_name("FILE");
  command.add_option("--trace", options.trace, "record to this CSV file; - is standard output")
      ->type_name("FILE");
}

void add_time(CLI::App& command, const char* name, std::optional<Time>& time, const char* help) {
  command
      .add_option_function<std::string>(
          name,
          [&time, name](const std::string& text) {
            time = parse_time(text);
            if (!time)
              throw CLI::ValidationError(name, "'" + text + "' is no time; write " + kTimeExamples);
          },
          help)
      ->type_name("TIME");
}

void add_state_directory(CLI::App& command, ScanOptions& options, const char* help) {
  command.add_option("--state", options.state, help)
      ->type_name("DIR")
      ->check([](const std::string& path) -> std::string {
        return path.size() < sizeof(Pin::Text) ? "" : "blocks take at most 63 characters";
      });
}

void add_run(CLI::App& app, ScanOptions& options, int& status) {
  CLI::App* command = app.add_subcommand("run", "scan in real time until stopped");
  add_scan(*command, options);
  add_state_directory(*command, options, "directory of the state files, not the program's");
  command->callback([&] { status = run(options); });
}

void add_simulate(CLI::App& app, SimulateOptions& options, int& status) {
  CLI::App* command = app.add_subcommand(
      "simulate",
      "scan on a simulated clock, as fast as it goes\n"
      "Starts without state and leaves none, and writes no outputs, unless asked to. Without "
      "--for\n"
      "and --cycles it ends with the recorded values; without --trace the trace goes to standard\n"
      "output.");
  add_scan(*command, options);
  add_time(*command, "--start", options.start,
           "simulated time of the first scan; default: where the recorded values begin, else now");
  add_state_directory(*command, options, "directory of the state files, kept at the end");
  command->add_flag("--outputs", options.write_outputs, "write the output files");
  command->callback([&] { status = simulate(options); });
}

void add_test(CLI::App& app, TestOptions& options, int& status) {
  CLI::App* command =
      app.add_subcommand("test", "hold a program against its own [[expect]] tables");
  add_program(*command, options);
  add_time(*command, "--start", options.start,
           "simulated time of the first scan; default: start of [test], else where the recorded "
           "values begin, else 2024");
  command->add_option("--junit", options.junit, "write a JUnit report")->type_name("FILE");
  command->callback([&] { status = test(options); });
}

void add_replay(CLI::App& app, ReplayOptions& options, int& status) {
  CLI::App* command = app.add_subcommand(
      "replay",
      "drive a program with the signals of a trace, compare its pins with the recorded ones");
  command->add_option("TRACE", options.recording, "trace (CSV)")->required();
  add_program(*command, options);
  command->add_option("--state", options.state, "begin with a copy of these state files")
      ->type_name("DIR")
      ->check(CLI::ExistingDirectory);
  command
      ->add_option("--tolerance", options.tolerance, "let values differ by this much; default: 0")
      ->type_name("NUMBER")
      ->check([](const std::string& text) -> std::string {
        const std::optional<double> number = parse_number(text);
        return number && *number >= 0 ? "" : "'" + text + "' is no number from 0 up";
      });
  command->callback([&] { status = replay(options); });
}

void add_check(CLI::App& app, ScanOptions& options, int& status) {
  CLI::App* command = app.add_subcommand("check", "read and wire a program, call nothing");
  add_program(*command, options);
  command->callback([&] { status = check(options); });
}

void add_blocks(CLI::App& app, BlocksOptions& options, int& status) {
  CLI::App* command = app.add_subcommand("blocks", "list the blocks, or the pins of one");
  command->add_option("NAME", options.name, "a block");
  CLI::Option* markdown =
      command->add_flag("--markdown", options.markdown, "print the reference pages");
  command->add_flag("--json", options.json, "print pins, units and states as JSON")
      ->excludes(markdown);
  command->callback([&] { status = blocks(options); });
}

void add_state_show(CLI::App& state, const char* name, const char* help, StateOptions& options,
                    int& status) {
  CLI::App* command = state.add_subcommand(name, help);
  command->add_option("FILE|DIR", options.paths, "state files or their directories")->required();
  command->add_flag("--json", options.json, "print JSON");
  command->add_flag("--verify", options.verify, "exit with 1 if a file is damaged");
  add_time(*command, "--now", options.now,
           "see ages from this time, for files that were copied; default: the present");
  command->callback([&options, &status, brief = std::string(name) == "list"] {
    options.brief = brief;
    status = state_show(options);
  });
}

void add_state(CLI::App& app, StateOptions& options, int& status) {
  CLI::App* state = app.add_subcommand("state", "look into state files, and change them");
  state->require_subcommand(1);
  add_state_show(*state, "list", "one line for each state file", options, status);
  add_state_show(*state, "show", "every key with its meaning, and what is damaged", options,
                 status);

  CLI::App* set =
      state->add_subcommand("set",
                            "write one key, while no host holds the directory\n"
                            "A state may be given by its name, a stamp as a time or now.");
  set->add_option("FILE", options.file, "a state file")->required();
  set->add_option("KEY=VALUE", options.assignment, "what to write")->required();
  set->callback([&] { status = state_set(options); });

  CLI::App* reset = state->add_subcommand("reset", "remove state files: the blocks start anew");
  reset->add_option("FILE", options.paths, "state files")->required();
  reset->add_flag("--yes", options.yes, "do not ask");
  reset->callback([&] { status = state_reset(options); });
}

}  // namespace

int main(int argc, char** argv) {
  open_standard_streams();
  CLI::App app("Runs control programs made of function blocks.", "scanhost");
  app.set_version_flag("--version", "scanhost " SCANHOST_VERSION);
  app.require_subcommand(1);
  app.failure_message(CLI::FailureMessage::simple);
  int status = 0;
  ScanOptions run_options;
  SimulateOptions simulate_options;
  TestOptions test_options;
  ReplayOptions replay_options;
  ScanOptions check_options;
  BlocksOptions blocks_options;
  StateOptions state_options;
  add_run(app, run_options, status);
  add_simulate(app, simulate_options, status);
  add_test(app, test_options, status);
  add_replay(app, replay_options, status);
  add_check(app, check_options, status);
  add_blocks(app, blocks_options, status);
  add_state(app, state_options, status);
  try {
    app.parse(argc, argv);
    return flushed(status);
  } catch (const CLI::ParseError& error) {
    if (const std::string wrong = unknown_command(app, argc, argv); !wrong.empty()) {
      std::fprintf(stderr, "scanhost: %s\n", wrong.c_str());
      return kRejected;
    }
    if (error.get_exit_code() != 0) std::fputs("scanhost: ", stderr);
    return app.exit(error) == 0 ? 0 : kRejected;
  } catch (const Rejection& rejection) {
    std::fputs(rejection.what(), stderr);
    return kRejected;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "scanhost: %s\n", failure.what());
    return kFailed;
  }
}
