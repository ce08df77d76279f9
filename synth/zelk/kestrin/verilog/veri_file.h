// veri_file: the public face of the Verilog front end: analyse a file, find libraries and units, elaborate. Libraries,
// search directories and callbacks belong to the process; an object holds the table of macros.
#ifndef KESTRIN_VERILOG_VERI_FILE_H
#define KESTRIN_VERILOG_VERI_FILE_H

#include "containers/views.h"
#include "verilog/veri_macro.h"
#include "verilog/verilibrary.h"

class MessageDirectives;

class veri_file {
public:
  veri_file() = default;
  veri_file(const veri_file&) = delete;
  veri_file& operator=(const veri_file&) = delete;

  /// Reads a file into a library, which is made when needed. 1 when the file exists and no error was counted. Units
  /// that were complete before the first error stay in the library.
  unsigned Analyze(const char* file, veri_dialect dialect, const char* work_library = "work");
  /// Analyses, and elaborates what the library has.
  unsigned Read(const char* file, const char* work_library = "work", veri_dialect dialect = VERI_2K);
  VeriMacroTable& Macros() { return _macros; }

  /// Elaborates one module with the host's parameters (name to Param; may be null).
  static unsigned Elaborate(const char* unit, const char* library, const Map* parameters);
  /// Every module that is not elaborated yet.
  static unsigned ElaborateAll(const char* library = "work");

  /// The units of the last Analyze, as VeriDesignUnitId, in source order.
  static Set& NewlyFound();
  /// Units that were registered for a later resolve, as VeriDesignUnitId.
  static Set& UnresolvedDesignUnits();
  /// Takes a unit that is deleted out of both sets and out of the dependents of all other units.
  static void ForgetDesignUnit(VeriDesignUnitId* id);
  /// Looks for NAME.v in the -y directories, and analyses it; null when there is none.
  static VeriModule* FindUnknownModule(const char* name);
  /// The module in this library, else in any; null when there is none.
  static VeriModule* FindModule(const char* name, VeriLibrary* first);
  static VeriPackage* FindPackage(const char* name, VeriLibrary* first);

  static void AddYDir(const char* directory);
  static void RemoveYDir(const char* directory);
  static void RemoveAllYDirs();
  static void AddIncludeDir(const char* directory);
  static void RemoveIncludeDir(const char* directory);
  static void RemoveAllIncludeDirs();
  /// The name if it is a regular file, else in the first include directory that has it; null when none has.
  static OwnedString IncludeFileName(const char* name);

  static VeriLibrary* GetLibrary(const char* name, unsigned create = 0, unsigned case_sensitive = 1);
  static VeriLibrary* WorkLibrary();
  static void SetWorkLibrary(VeriLibrary* library);
  static const Map& AllLibraries();
  static void RemoveLibrary(const char* name);
  static void RemoveAllLibraries();

  /// The function tells whether the user wants to stop.
  static void RegisterInterrupt(unsigned (*function)(unsigned long linefile));
  static void RegisterBlackboxed(unsigned (*function)(const char* name));
  /// Errors were counted, or the user wants to stop, which is reported.
  static unsigned CheckForInterrupt(unsigned long linefile);
  /// Whether the host wants a module as a black box.
  static unsigned Blackboxed(const char* name);

  // The files that the file analysed last depends on: includes, and the files that define its macros.
  static void AddDependentFile(const char* name);
  static const Set& DependentFiles();
  static void ClearDependentFiles();

  /// Writes the units of a library, or one, as source text. 0 when the file cannot be written or nothing is there.
  static unsigned PrettyPrint(const char* file, const char* unit, const char* library);

  static void FreeStaticMemory();

private:
  unsigned Parse(const char* file, veri_dialect dialect, const char* work_library);
  VeriMacroTable _macros;
};

#endif
