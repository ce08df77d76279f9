// The extensions of the files that the host's tools exchange.
#ifndef FIO_EXTENSION_H
#define FIO_EXTENSION_H

enum FIO_EXTENSION_TYPE { FIO_EXTENSION_INCLUDE = 5, FIO_EXTENSION_SYMBOL = 27 };

class FIO_EXTENSION_TYPE_INFO {
public:
  /// With its dot; empty for an unknown kind.
  static const char* get_extension_string(FIO_EXTENSION_TYPE type) {
    switch (type) {
    case FIO_EXTENSION_INCLUDE: return ".inc";
    case FIO_EXTENSION_SYMBOL: return ".sym";
    }
    return "";
  }
};

#endif
