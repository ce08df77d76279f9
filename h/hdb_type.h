// Types of the ports of design units, as far as the host keeps them.
#ifndef HDB_TYPE_H
#define HDB_TYPE_H

#include <memory>
#include <ostream>
#include <string>
#include <vector>

/// A range; direction 1 counts down (left is the higher bound), 0 counts up.
struct HDB_RANGE {
  int left = 0;
  int right = 0;
  int direction = 1;
};

/// A type by name, with the library and the package that declare it where there is one.
class HDB_HDL_TYPE {
public:
  explicit HDB_HDL_TYPE(const std::string& name) : m_name(name) {}
  virtual ~HDB_HDL_TYPE() = default;
  const std::string& get_name() const { return m_name; }
  void set_package(const std::string& library, const std::string& package) {
    m_library = library;
    m_package = package;
  }
  const std::string& get_library() const { return m_library; }
  const std::string& get_package() const { return m_package; }
  virtual void dump(std::ostream& stream) const = 0;

private:
  std::string m_name;
  std::string m_library;
  std::string m_package;
};

/// One bit.
class HDB_LOGIC_TYPE : public HDB_HDL_TYPE {
public:
  HDB_LOGIC_TYPE(const std::string& name, bool is_signed) : HDB_HDL_TYPE(name), m_is_signed(is_signed) {}
  void dump(std::ostream& stream) const override;

private:
  bool m_is_signed;
};

/// A number in a range.
class HDB_SCALAR_TYPE : public HDB_HDL_TYPE {
public:
  HDB_SCALAR_TYPE(const std::string& name, HDB_RANGE range, bool is_signed)
      : HDB_HDL_TYPE(name), m_range(range), m_is_signed(is_signed) {}
  void dump(std::ostream& stream) const override;

private:
  HDB_RANGE m_range;
  bool m_is_signed;
};

/// One range per dimension, outermost first, over elements of another type.
class HDB_ARRAY_TYPE : public HDB_HDL_TYPE {
public:
  HDB_ARRAY_TYPE(const std::string& name, std::vector<HDB_RANGE> ranges, bool is_packed)
      : HDB_HDL_TYPE(name), m_ranges(std::move(ranges)), m_is_packed(is_packed) {}
  /// Takes the element type over.
  void set_element_type(HDB_HDL_TYPE* element) { m_element.reset(element); }
  const HDB_HDL_TYPE* get_element_type() const { return m_element.get(); }
  const std::vector<HDB_RANGE>& get_ranges() const { return m_ranges; }
  void dump(std::ostream& stream) const override;

private:
  std::vector<HDB_RANGE> m_ranges;
  std::unique_ptr<HDB_HDL_TYPE> m_element;
  bool m_is_packed;
};

/// Owns the types of a project.
class HDB_TYPE_DB {
public:
  /// Takes the type over; returns the one to use from now on.
  HDB_HDL_TYPE* add_type(HDB_HDL_TYPE* type);
  void dump(std::ostream& stream) const;

private:
  std::vector<std::unique_ptr<HDB_HDL_TYPE>> m_types;
};

#endif
