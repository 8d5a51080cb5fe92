// scanhost state: looks into the state files, and changes them while no host holds them.
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>

#include "host/clock.h"
#include "host/commands/commands.h"
#include "host/problems.h"
#include "host/state_dir.h"
#include "host/state_view.h"

namespace scanhost {
namespace {

using Json = nlohmann::ordered_json;

std::string pad(std::string text, std::size_t width) {
  text.resize(std::max(width, text.size() + 2), ' ');
  return text;
}

// A damaged file may hold what a terminal would obey.
void put(std::string text) {
  for (char& c : text)
    if ((static_cast<unsigned char>(c) < ' ' && c != '\n') || c == '\x7F') c = '?';
  std::puts(text.c_str());
}

std::string heading(const StateView& view) {
  return pad(view.name.type, 16) + pad(view.name.group, 12) + pad(view.name.instance, 20);
}

void print(const StateView& view, bool keys) {
  std::string text = heading(view);
  if (!keys) {
    text += view.damage.empty() ? "ok" : "damaged: " + view.damage.front();
    if (view.damage.size() > 1) text += ", and " + std::to_string(view.damage.size() - 1) + " more";
    put(text);
    return;
  }
  text += view.path + "\n";
  if (!view.name.note.empty()) text += "  name: " + view.name.note + "\n";
  for (const StateView::Record& record : view.records) {
    text += "  " + pad(record.key, 20) + pad(record.value, 16);
    if (!record.reading.empty()) text += pad(record.reading, 20);
    if (record.field != nullptr) text += record.field->help;
    if (record.field != nullptr && record.stamp == 0 && *record.field->unit != '\0')
      text += std::string(" [") + record.field->unit + "]";
    text += "\n";
  }
  for (const std::string& damage : view.damage) text += "  damaged: " + damage + "\n";
  put(text);
}

Json to_json(const StateView& view) {
  Json keys = Json::array();
  for (const StateView::Record& record : view.records) {
    Json key = {{"key", record.key}, {"value", record.value}};
    if (!record.reading.empty()) key["reading"] = record.reading;
    if (record.stamp != 0) key["time"] = record.stamp;
    if (record.field != nullptr) {
      key["meaning"] = record.field->help;
      if (*record.field->unit != '\0') key["unit"] = record.field->unit;
    }
    keys.push_back(std::move(key));
  }
  Json file = {{"file", view.path},
               {"block", view.name.type},
               {"group", view.name.group},
               {"instance", view.name.instance},
               {"keys", keys},
               {"damage", view.damage}};
  if (!view.name.note.empty()) file["note"] = view.name.note;
  return file;
}

std::string directory_of(const std::string& path) {
  const std::string directory = std::filesystem::path(path).parent_path().string();
  return directory.empty() ? "." : directory;
}

// Throws Failure if there is no such file: the directory is not made for it.
StateDir lock_directory_of(const std::string& path) {
  std::error_code no_error;
  if (!std::filesystem::is_regular_file(path, no_error))
    throw Failure(
        path + ": " +
        (std::filesystem::exists(path, no_error) ? "no regular file" : std::strerror(ENOENT)) +
        "; name a state file");
  return StateDir(directory_of(path));
}

bool confirmed(const std::string& path) {
  if (isatty(STDIN_FILENO) == 0)
    throw Rejection("scanhost: to remove " + path + " say so: --yes\n");
  std::fprintf(stderr, "Remove %s, so that the block starts anew? [y/N] ", path.c_str());
  std::string answer;
  std::getline(std::cin, answer);
  return answer == "y" || answer == "Y" || answer == "yes";
}

}  // namespace

int state_show(const StateOptions& options) {
  const Time now = options.now.value_or(wall_clock());
  bool damaged = false, failed = false;
  Json files = Json::array();
  for (const std::string& path : options.paths)
    for (const std::string& file : state_files(path)) {
      try {
        const StateView view = read_state(file, now);
        damaged |= !view.damage.empty();
        if (options.json)
          files.push_back(to_json(view));
        else
          print(view, !options.brief);
      } catch (const Failure& failure) {  // the other files can still be shown
        std::fprintf(stderr, "scanhost: %s\n", failure.what());
        failed = true;
      }
    }
  // Bytes of a damaged file that are no UTF-8 are replaced.
  if (options.json) std::puts(files.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
  return failed || (options.verify && damaged) ? 1 : 0;
}

int state_set(const StateOptions& options) {
  const StateDir lock = lock_directory_of(options.file);
  const std::string value =
      write_state(options.file, options.assignment, options.now.value_or(wall_clock()));
  std::printf("%s = %s\n", options.assignment.substr(0, options.assignment.find('=')).c_str(),
              value.c_str());
  return 0;
}

int state_reset(const StateOptions& options) {
  for (const std::string& path : options.paths) {
    const StateDir lock = lock_directory_of(path);
    if (std::filesystem::path(path).extension() != ".dat")
      throw Rejection("scanhost: " + path + " is no state file; their names end in .dat\n");
    if (!options.yes && !confirmed(path)) continue;
    if (unlink(path.c_str()) < 0) throw Failure(path + ": " + std::strerror(errno));
    std::printf("removed %s\n", path.c_str());
  }
  return 0;
}

}  // namespace scanhost
