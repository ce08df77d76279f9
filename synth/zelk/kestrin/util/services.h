// Services: what the kernel asks of the one who embeds it: files, flags, debug output, profiling, checks of attributes,
// memory contents, and the user's control over messages. The kernel includes nothing of the adapter; the adapter
// derives from these classes. Without an embedder every operation has a plain default, so that the kernel can be used
// and tested alone.
#ifndef KESTRIN_UTIL_SERVICES_H
#define KESTRIN_UTIL_SERVICES_H

#include <memory>
#include <string>

#include "util/linefile.h"
#include "util/strings.h"

class Array;

/// A set of messages switched on and off, and a message level, as the sources and the project ask for them.
class MessageDirectives {
public:
  virtual ~MessageDirectives() = default;
  /// Whether a number names a message that directives may control; reports it when not. `text` stands for the number
  /// when that does not fit (`id` is 0 then).
  virtual bool CheckMsgId(unsigned /*id*/, const char* /*text*/, const char* /*file*/, unsigned /*line*/) {
    return true;
  }
  /// Whether the number is that of an error, which cannot be switched.
  virtual bool IsErrorMessage(unsigned /*id*/) const { return false; }
  virtual void MessageOn(unsigned /*id*/) {}
  virtual void MessageOff(unsigned /*id*/) {}
  /// 0 low, 1 medium, 2 high; with the place where it was asked for.
  virtual void SetMessageLevel(unsigned /*level*/, linefile_type /*linefile*/) {}
  /// The level in force.
  virtual unsigned MessageLevel() const { return 1; }
  /// Makes the whole set effective.
  virtual void RefreshMessageStatus() {}
};

/// What a file lookup yields: the name to be reported, and the full name, null when there is no such file.
struct FoundFile {
  OwnedString reported;
  OwnedString full;
};

/// The initial contents of a memory, and what its file is named by.
struct MemoryContents {
  const Array* words = nullptr; // char*, one bit string of `width` characters per address, from address 0
  unsigned width = 0;
  unsigned depth = 0;
  bool is_unsigned_address = false;
  bool is_rom = false;
  const char* path = nullptr; // what stands before the rest of the file's name
  unsigned number = 0;        // among the memories of the unit
  const char* entity_name = nullptr;
  const char* unique_name = nullptr; // of the unit with its parameters and the memory
};

class KernelServices {
public:
  virtual ~KernelServices() = default;

  /// Looks a file up. With a current file (either name may be null) beside that file and along the include directories.
  /// The default takes the name as it stands, and then beside the current file.
  virtual FoundFile FindFile(const char* name, const char* current_absolute, const char* current_relative);
  /// A flag of this analysis or elaboration; 0 when nobody set it.
  virtual int Flag(const char* /*key*/) { return 0; }
  virtual void SetFlag(const char* /*key*/, int /*value*/) {}
  virtual void Debug(const char* /*text*/) {}
  /// A named stretch of work begins; what comes back is handed to ProfileEnd.
  virtual void* ProfileBegin(const char* /*name*/) { return nullptr; }
  virtual void ProfileEnd(void* /*scope*/) {}

  /// Writes the contents of a memory to a file of its own and gives the name of the file; null when that failed.
  virtual OwnedString WriteMemoryFile(const MemoryContents& /*contents*/) { return nullptr; }

  /// Whether an attribute is known; reports it when not.
  virtual bool CheckAttributeName(const char* /*name*/, const char* /*file*/, unsigned /*line*/) { return true; }
  /// Reports a value that a known attribute does not take. A null value is no value.
  virtual void CheckAttributeValue(const char* /*name*/, const char* /*value*/, const char* /*file*/,
                                   unsigned /*line*/) {}
  /// Reports attributes and directives that the user's tools forbid. The trigger is the word that opened a pragma
  /// comment, null for attribute syntax and for languages without triggers.
  virtual void CheckAttributeOrDirective(const char* /*name*/, const char* /*file*/, unsigned /*line*/,
                                         bool /*is_attribute*/, const char* /*trigger*/) {}

  /// The set that a file begins with when nobody registered one.
  virtual std::unique_ptr<MessageDirectives> NewMessageDirectives() { return std::make_unique<MessageDirectives>(); }
  /// The user's word for a Verilog dialect, 1 to 3.
  virtual const char* VerilogVersionName(unsigned dialect);
  /// The user's word for a message level, 0 to 2.
  virtual const char* MessageLevelName(unsigned level);

  /// The services in force, never null.
  static KernelServices& Get();
  /// Installs services that the caller keeps; null restores the defaults.
  static void Set(KernelServices* services);
};

/// A flag, by its key.
inline int kestrin_flag(const char* key) { return KernelServices::Get().Flag(key); }
inline void kestrin_set_flag(const char* key, int value) { KernelServices::Get().SetFlag(key, value); }
/// A line of debug output.
[[gnu::format(printf, 1, 2)]] void kestrin_debug(const char* format, ...);

/// Names the work that is done while the object lives to the profiler.
class ProfileScope {
public:
  explicit ProfileScope(const char* name) : _scope(KernelServices::Get().ProfileBegin(name)) {}
  ProfileScope(const ProfileScope&) = delete;
  ProfileScope& operator=(const ProfileScope&) = delete;
  ~ProfileScope() {
    if (_scope) KernelServices::Get().ProfileEnd(_scope);
  }

private:
  void* _scope;
};

#endif
