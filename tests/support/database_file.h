// What tests of saved databases share: everything in the database as text, the bytes of a file, and the same file as a
// machine of the other byte order would have written it.
#ifndef TESTS_SUPPORT_DATABASE_FILE_H
#define TESTS_SUPPORT_DATABASE_FILE_H

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "database/netlistchecker.h"
#include "database/primitives.h"
#include "database/views.h"
#include "util/linefile.h"
#include "util/saverestore.h"

/// A database file of this process alone: several may run the same test.
inline std::string TemporaryFile(const std::string& what) {
  return testing::TempDir() + "zelk_" + what + "_" + std::to_string(getpid()) + ".db";
}

/// The file that an object is saved to.
inline std::string BytesOfSaved(const DesignObj* object, const std::string& path) {
  {
    SaveRestore stream(path.c_str(), 0);
    object->Save(stream);
    EXPECT_TRUE(stream.IsOK());
  }
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline void WriteBytes(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

/// Everything in a library, by name.
inline std::string DumpOf(const Library* library) {
  std::map<std::string, std::string> dumps;
  for (Cell* cell : CellsOf(library))
    for (Netlist* netlist : NetlistsOf(cell)) {
      std::ostringstream out;
      for (const DesignObj* object : {static_cast<const DesignObj*>(library), static_cast<const DesignObj*>(cell)}) {
        out << object->Name() << " " << LineFile::GetLineNo(object->Linefile()) << "\n";
        object->DumpAttributes(out);
      }
      netlist->Dump(out);
      dumps[std::string(library->Name()) + "|" + cell->Name() + "|" + netlist->Name()] = out.str();
      EXPECT_EQ(NetlistChecker(netlist).Report(), "");
    }
  std::string all;
  for (auto& [name, dump] : dumps) all += name + "\n" + dump;
  return all;
}

/// As in a new run, apart from the primitives.
inline void ForgetDesigns() {
  for (Library* library : LibrariesOf(Libset::Global()))
    if (library != Library::Primitives()) delete library;
}

/// Walks a file of a library by the format alone, and reverses the bytes of every integer.
class ByteSwapper {
public:
  explicit ByteSwapper(std::string& bytes) : _bytes(bytes) {
    Integers(2);
    Prefix();
    Integers(2);
    while (Integer()) Cell();
    Integer();
    EXPECT_EQ(_pos, _bytes.size());
  }

private:
  int32_t Integer() {
    int32_t value = 0;
    if (_pos + sizeof value > _bytes.size()) return 0;
    _bytes.copy(reinterpret_cast<char*>(&value), sizeof value, _pos);
    std::reverse(&_bytes[_pos], &_bytes[_pos] + sizeof value);
    _pos += sizeof value;
    return value;
  }
  void Integers(int count) {
    while (count-- > 0) Integer();
  }
  void String() { _pos += static_cast<size_t>(std::max(Integer(), 0)); }
  void Prefix() {
    String();
    if (Integer() == -1) {
      String();
      Integer();
    }
    for (int left = Integer() * 2; left > 0; left--) String();
  }
  void Cell() {
    Prefix();
    Integer();
    while (Integer()) View(Integer());
  }
  void View(int type) {
    if (type == PRIM_NONE) return Contents();
    Prefix();
    if (type <= PRIM_INFER_POINT || type == OPER_DUAL_PORT_RAM) return;
    const bool three = type >= OPER_ADDER && type <= OPER_MODULO;
    const bool two = (type >= OPER_SHIFT_LEFT && type <= OPER_ROTATE_RIGHT) || type == OPER_LESSTHAN ||
                     type == OPER_EQUAL || type == OPER_NTO1MUX;
    Integers(three ? 3 : two ? 2 : 1);
  }
  void Contents() {
    Prefix();
    while (Integer()) {
      View(Integer());
      String();
      String();
    }
    Integers(5);
    Each([this] { Integers(1); });
    Each([this] {
      Integers(3);
      Integers(Integer());
    });
    for (int left = Integer(); left > 0; left--) {
      const int kind = Integer();
      Prefix();
      Integers(kind - 1);
    }
    Each([this] {
      for (int left = Integer(); left > 0; left--) {
        Integer();
        String();
      }
    });
    Each([this] {
      Integers(Integer());
      Integers(2 * Integer());
    });
    Each([this] {
      Integers(2);
      Integers(2 * Integer());
    });
    for (int left = Integer() * 3; left > 0; left--) String();
  }
  template <class Rest> void Each(Rest rest) {
    for (int left = Integer(); left > 0; left--) {
      Prefix();
      rest();
    }
  }

  std::string& _bytes;
  size_t _pos = 0;
};

#endif
