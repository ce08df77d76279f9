// What is known of the target device.
#ifndef HCU_FACADE_UTIL_H
#define HCU_FACADE_UTIL_H

class HCU_FACADE {
public:
  /// The device family, or null when the project names none (configuration variable "device_family").
  const char* get_family() const;
};

class HCU_FACADE_UTIL {
public:
  /// Never null.
  static const HCU_FACADE* get_facade();
};

#endif
