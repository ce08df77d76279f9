// Saved netlists that are cut short or have a wrong bit: each ends in the message that tells it, with nothing left in
// the database, or in a sound netlist.
#ifndef TESTS_SUPPORT_DAMAGED_FILE_H
#define TESTS_SUPPORT_DAMAGED_FILE_H

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <random>
#include <string>
#include <string_view>

#include "support/database_file.h"
#include "util/message.h"

class DamagedFile {
public:
  /// A netlist as it is saved now. Anything in the database is forgotten by the tries.
  explicit DamagedFile(const Netlist* netlist)
      : _cell_name(netlist->Owner()->Name()), _path(TemporaryFile("damaged")), _bytes(BytesOfSaved(netlist, _path)) {}

  /// Cuts the file at as many places as ZELK_DAMAGED_PLACES says, few by default and every byte at most, and has a bit
  /// wrong at each of them. What went wrong is told by the test library.
  void Try(std::mt19937& random) {
    const char* wish = std::getenv("ZELK_DAMAGED_PLACES");
    const size_t stride = std::max<size_t>(1, _bytes.size() / (wish ? std::strtoul(wish, nullptr, 10) : 12));
    const size_t first = random() % stride;
    WriteBytes(_path, _bytes);
    _files++;
    for (size_t place = first; place < _bytes.size(); place += stride) TryFlip(place, random() % 8);
    size_t place = first + (_bytes.size() - 1 - first) / stride * stride;
    for (bool more = true; more; place -= stride) {
      more = place >= stride;
      TryCut(place);
    }
    std::filesystem::remove(_path);
  }

  static void PrintTries() {
    std::cout << _files << " damaged files: " << _cuts << " cuts and " << _flips << " flips, of which " << _sound
              << " gave a sound netlist\n";
  }

private:
  static constexpr size_t end_mark_size = 4;

  void TryFlip(size_t place, unsigned bit) {
    std::fstream file(_path, std::ios::in | std::ios::out | std::ios::binary);
    auto put = [&](char byte) { file.seekp(static_cast<std::streamoff>(place)).put(byte).flush(); };
    put(static_cast<char>(_bytes[place] ^ 1 << bit));
    _sound += Restores();
    put(_bytes[place]);
    _flips++;
    ExpectNothingLeft(place);
  }

  /// Without the end mark all of the netlist is there.
  void TryCut(size_t size) {
    std::filesystem::resize_file(_path, size);
    EXPECT_EQ(Restores(), size + end_mark_size >= _bytes.size()) << _cell_name << " cut at " << size;
    _cuts++;
    ExpectNothingLeft(size);
  }

  bool Restores() {
    static bool is_told;
    is_told = false;
    Message::ClearErrorCount();
    Message::RegisterCallBackError([](const char* text) {
      is_told |=
          std::string_view(text).find("An error occurred during database binary restore") != std::string_view::npos;
    });
    auto* top = new Library("damaged top");
    Libset::Global()->Add(top);
    bool restored;
    {
      SaveRestore stream(_path.c_str(), 1);
      auto* netlist = new Netlist(stream);
      auto* cell = new Cell(_cell_name.c_str());
      top->Add(cell);
      restored = netlist->InstallRestored(stream, cell) != nullptr;
    }
    if (restored)
      for (Library* library : LibrariesOf(Libset::Global()))
        if (library != Library::Primitives()) DumpOf(library);
    Message::RegisterCallBackError(nullptr);
    EXPECT_NE(restored, is_told) << _cell_name;
    if (restored)
      ForgetDesigns();
    else
      delete top;
    return restored;
  }

  void ExpectNothingLeft(size_t place) const {
    for (const Library* library : LibrariesOf(Libset::Global()))
      if (library != Library::Primitives()) ADD_FAILURE() << _cell_name << " " << place << " left " << library->Name();
    EXPECT_EQ(Netlist::PresentDesign(), nullptr);
  }

  static inline unsigned long _files = 0;
  static inline unsigned long _cuts = 0;
  static inline unsigned long _flips = 0;
  static inline unsigned long _sound = 0;

  std::string _cell_name;
  std::string _path;
  std::string _bytes;
};

#endif
