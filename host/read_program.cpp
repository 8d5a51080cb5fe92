// Reads a control program: [program], [signals], [[block]], [outputs], [trace];
// types.h reads [types], expectations.h reads [test] and [[expect]].
#include <algorithm>
#include <cmath>
#include <filesystem>

#include "host/document.h"
#include "host/expectations.h"
#include "host/program.h"
#include "host/report_file.h"
#include "host/section.h"
#include "host/types.h"
#include "host/wiring.h"

namespace scanhost {
namespace {

constexpr std::size_t kMaxText = sizeof(Pin::Text) - 1;

class ProgramReader {
 public:
  explicit ProgramReader(const std::string& path) : problems_(path) { program_.path = path; }

  Program read() {
    const Value document = read_document(program_.path, problems_);
    if (problems_.empty()) read_tables(document);
    if (!problems_.empty()) throw Rejection(problems_.text());
    return std::move(program_);
  }

 private:
  void read_tables(const Value& document) {
    Section top(document, {1, 1}, "the program", problems_);
    top.require("program", "[program] with scan = \"100ms\"");
    top.require("block", "[[block]] with name, type and in");
    if (const Value* table = top.table("program")) read_general(*table, top.entry("program").at);
    if (const Value* table = top.table("signals"))
      for (const Entry& entry : table->entries) read_signal(entry);
    declared_ = read_types(top, program_.path, problems_);
    if (const Value* list = top.list("block"))
      for (const Value& block : list->items) read_block(block);
    check_state_files();
    // Wires may lead to blocks further down: they are resolved when all blocks are known.
    for (std::size_t i = 0; i < inputs_.size(); ++i)
      if (inputs_[i] != nullptr) wire_block(program_.blocks[i], *inputs_[i]);
    if (const Value* table = top.table("outputs"))
      for (const Entry& entry : table->entries) read_output(entry);
    read_trace(top.table("trace"));
    read_expectations(top, group_, program_, problems_);
    top.finish();
  }

  void read_general(const Value& table, Position at) {
    Section section(table, at, "[program]", problems_);
    section.require("scan", "scan = \"100ms\"");
    program_.name =
        section.text("name").value_or(std::filesystem::path(program_.path).stem().string());
    program_.scan = section.duration("scan").value_or(std::chrono::seconds(1));
    if (section.find("group") != nullptr) {
      group_ = section.text("group").value_or("");
      check_tag(group_, "group", section.entry("group").value.at);
    }
    program_.state_dir = beside_program(section.text("state").value_or("state"));
    if (program_.state_dir.size() > kMaxText)
      problems_.add(section.find("state") ? section.entry("state").value.at : at,
                    "the state directory '" + program_.state_dir + "' has " +
                        std::to_string(program_.state_dir.size()) +
                        " characters, blocks take at most " + std::to_string(kMaxText),
                    "give a shorter path, for instance by a symbolic link, or start scanhost "
                    "nearer to the program");
    program_.group = group_;
    program_.priority = static_cast<int>(section.integer("priority", 1, 99).value_or(0));
    program_.lock_memory = section.flag("lock_memory").value_or(false);
    section.finish();
  }

  void read_signal(const Entry& entry) {
    check_name(entry.key, "signal", entry.at);
    SignalSpec signal{.name = entry.key};
    if (!entry.value.is_table()) {
      problems_.add(entry.value.at, "signal '" + entry.key + "' is " + kind_name(entry.value.kind),
                    "write a table: " + entry.key + " = { value = 0 }");
      return;
    }
    Section section(entry.value, entry.at, "signal '" + entry.key + "'", problems_);
    const bool has_file = section.find("file") != nullptr;
    const bool has_csv = section.find("csv") != nullptr;
    const bool has_value = section.find("value") != nullptr;
    if (has_file + has_csv + has_value != 1)
      problems_.add(entry.at,
                    "signal '" + entry.key + "' has " +
                        (has_file || has_csv || has_value ? "several sources" : "no source"),
                    "give one of file = \"...\", csv = \"...\" and value = 0");
    if (has_file) {
      signal.kind = SignalSpec::Kind::kFile;
      signal.path = beside_program(section.text("file").value_or(""));
    } else if (has_csv) {
      signal.kind = SignalSpec::Kind::kSeries;
      read_series_of(signal, section);
    } else {
      signal.value = section.number("value").value_or(0.0);
    }
    if (!has_value) signal.on_error = read_on_error(section);
    section.finish();
    program_.signals.push_back(std::move(signal));
  }

  void read_series_of(SignalSpec& signal, Section& section) {
    const std::string column = section.text("column").value_or("");
    const std::optional<std::string> csv = section.text("csv");
    if (!csv) return;
    signal.path = beside_program(*csv);
    const Position at =
        section.find("column") && !column.empty() && std::filesystem::exists(signal.path)
            ? section.entry("column").value.at
            : section.entry("csv").value.at;
    signal.series = read_series(signal.path, column, at, problems_);
  }

  std::optional<double> read_on_error(Section& section) {
    const Entry* entry = section.find("on_error");
    if (entry == nullptr) return {};
    const Value& value = entry->value;
    if (value.is_number()) return value.number;
    if (value.is_text() && value.text == "zero") return 0.0;
    if (!value.is_text() || value.text != "keep")
      problems_.add(
          value.at, "'on_error' is neither \"keep\" nor \"zero\" nor a number",
          value.is_text() ? suggest(value.text, {"keep", "zero"}, "") : "write one of them");
    return {};
  }

  // A block is kept also where something is wrong with it, so that wires to it find it.
  void read_block(const Value& table) {
    BlockSpec block{.at = table.at};
    inputs_.push_back(nullptr);
    if (!table.is_table()) {
      problems_.add(table.at, std::string("a block is ") + kind_name(table.kind),
                    "write [[block]] with name, type and in");
      program_.blocks.push_back(block);
      return;
    }
    Section section(table, table.at, "the block", problems_);
    section.require("name", "name = \"Level\"");
    section.require("type", "type = \"" + catalogue_names().front() + "\"");
    if (const auto name = section.text("name")) {
      block.name = *name;
      block.at = section.entry("name").value.at;
      check_name(block.name, "block", block.at);
      check_tag(block.name, "name", block.at);
    }
    block.group = group_;
    if (const auto group = section.text("group")) {
      block.group = *group;
      check_tag(block.group, "group", section.entry("group").value.at);
    }
    if (const auto type = section.text("type"))
      block.type = find_type(*type, section.entry("type").value.at);
    inputs_.back() = section.table("in");
    section.finish();
    program_.blocks.push_back(std::move(block));
  }

  const BlockType* find_type(const std::string& name, Position at) {
    if (const auto found = program_.types.find(name); found != program_.types.end())
      return &found->second;
    if (auto type = catalogue_type(name))
      return &program_.types.emplace(name, std::move(*type)).first->second;
    if (const auto found = declared_.find(name); found != declared_.end())
      return &program_.types.emplace(*found).first->second;
    std::vector<std::string> names = catalogue_names();
    for (const auto& [declared, type] : declared_) names.push_back(declared);
    problems_.add(at, "there is no block type '" + name + "'",
                  suggest(name, names, "'scanhost blocks' lists them, [types.NAME] declares one"));
    return nullptr;
  }

  // Two instances must not share a state file, whose name is type, group and name.
  void check_state_files() {
    std::map<std::string, const BlockSpec*> first;
    for (const BlockSpec& block : program_.blocks) {
      if (block.type == nullptr || block.name.empty()) continue;
      const std::string file = block.type->name + "_" + block.group + "_" + block.name + ".dat";
      const auto [found, is_new] = first.emplace(file, &block);
      if (!is_new)
        problems_.add(block.at,
                      "block '" + block.name + "' would share its state file " + file +
                          " with that of line " + std::to_string(found->second->at.line),
                      "give it a name or a group of its own");
    }
  }

  void wire_block(BlockSpec& block, const Value& inputs) {
    if (block.type == nullptr) return;
    for (const Entry& entry : inputs.entries) {
      const Value& value = entry.value;
      const std::optional<unsigned> pin = find_pin(block.type->inputs, entry.key);
      if (!pin)
        problems_.add(entry.at, block.type->name + " has no input '" + entry.key + "'",
                      suggest(entry.key, names_of(block.type->inputs),
                              block.type->library.empty()
                                  ? "'scanhost blocks " + block.type->name + "' lists them"
                                  : "[types." + block.type->name + "] lists them"));
      else if (value.is_number())
        block.constants.push_back({*pin, value.number});
      else if (!value.is_text())
        problems_.add(value.at, "input '" + entry.key + "' is " + kind_name(value.kind),
                      "write a number, true, false or a wire \"Block.Pin\"");
      else if (const auto source =
                   Wiring(program_, problems_).resolve(value.text, value.at, block.group))
        block.wires.push_back({*pin, *source});
    }
  }

  void read_output(const Entry& entry) {
    if (!entry.value.is_table()) {
      problems_.add(entry.value.at, "output '" + entry.key + "' is " + kind_name(entry.value.kind),
                    "write a table: " + entry.key + " = { from = \"Block.Pin\", file = \"...\" }");
      return;
    }
    Section section(entry.value, entry.at, "output '" + entry.key + "'", problems_);
    OutputSpec output{.name = entry.key};
    section.require("from", "from = \"Block.Pin\"");
    section.require("file", "file = \"/sys/class/gpio/gpio17/value\"");
    if (const auto from = section.text("from")) {
      output.from_text = *from;
      const Position at = section.entry("from").value.at;
      output.from = Wiring(program_, problems_).resolve(*from, at, group_).value_or(Source{});
    }
    if (const auto file = section.text("file")) {
      output.path = beside_program(*file);
      if (is_recorded(program_, output.path))
        problems_.add(section.entry("file").value.at,
                      "the output would overwrite '" + output.path + "', which the program reads",
                      "give it another file");
      for (const OutputSpec& other : program_.outputs)
        if (other.path == output.path)
          problems_.add(section.entry("file").value.at,
                        "output '" + other.name + "' writes the same file",
                        "give each output a file of its own");
    }
    output.safe = section.number("safe");
    if (output.safe && !std::isfinite(*output.safe))
      problems_.add(section.entry("safe").value.at, "the safe value is not finite",
                    "write a number that the output can take: safe = 0");
    section.finish();
    program_.outputs.push_back(std::move(output));
  }

  void read_trace(const Value* table) {
    TraceSpec& trace = program_.trace;
    trace.every = program_.scan;
    const Wiring wiring(program_, problems_);
    const Value* record = nullptr;
    if (table != nullptr) {
      Section section(*table, table->at, "[trace]", problems_);
      record = section.list("record");
      trace.every = section.duration("every").value_or(program_.scan);
      if (const auto file = section.text("file")) trace.path = beside_program(*file);
      if (const Value* units = section.table("units")) check_units(*units, record);
      section.finish();
    }
    if (record == nullptr && problems_.empty()) trace.columns = wiring.everything();
    if (record == nullptr) return;
    for (const Value& item : record->items) {
      if (!item.is_text())
        problems_.add(item.at, std::string("the list 'record' has ") + kind_name(item.kind),
                      "write texts: \"Block.Pin\" or \"Signal\"");
      else if (const auto source = wiring.resolve(item.text, item.at, group_, true))
        trace.columns.push_back({item.text, *source});
    }
  }

  // The units are for those who draw the trace.
  void check_units(const Value& units, const Value* record) {
    for (const Entry& entry : units.entries) {
      const auto is_it = [&](const Value& item) { return item.text == entry.key; };
      if (!entry.value.is_text())
        problems_.add(entry.value.at, "a unit is " + std::string(kind_name(entry.value.kind)),
                      "write a text: \"" + entry.key + "\" = \"m\"");
      else if (record != nullptr && std::ranges::none_of(record->items, is_it))
        problems_.add(entry.at, "'record' has no '" + entry.key + "'",
                      "name a column of the trace, in quotes: \"Level.Q\" = \"m\"");
    }
  }

  // Dots have a meaning in wires; the rest does not pass through a trace.
  void check_name(const std::string& name, const std::string& what, Position at) {
    constexpr std::string_view kBlanks = " \t";
    if (name.empty() || name.find_first_of(".,\"\r\n") != std::string::npos ||
        kBlanks.find(name.front()) != kBlanks.npos || kBlanks.find(name.back()) != kBlanks.npos)
      problems_.add(at,
                    "the " + what + " name '" + name +
                        "' is empty, has a '.', ',', '\"' or line break, or a blank at an end",
                    "wires and traces could not name it; write another name");
  }

  // A tag becomes part of a file name and travels in a text of 63 characters.
  void check_tag(const std::string& tag, const std::string& what, Position at) {
    if (tag.size() > kMaxText)
      problems_.add(at,
                    "the " + what + " has " + std::to_string(tag.size()) +
                        " characters, blocks take at most " + std::to_string(kMaxText),
                    "shorten it");
    const auto unfit = [](char c) { return c == '/' || static_cast<unsigned char>(c) < ' '; };
    if (std::ranges::any_of(tag, unfit))
      problems_.add(at, "the " + what + " '" + tag + "' has a '/' or a control character",
                    "it becomes part of a file name; write another character");
  }

  std::string beside_program(const std::string& path) const {
    return (std::filesystem::path(program_.path).parent_path() / path).string();
  }

  Problems problems_;
  Program program_;
  std::string group_;
  std::map<std::string, BlockType> declared_;  // types of other libraries
  std::vector<const Value*> inputs_;           // of program_.blocks
};

}  // namespace

Program read_program(const std::string& path) { return ProgramReader(path).read(); }

}  // namespace scanhost
