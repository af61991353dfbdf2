// An ordered list of named values: the keys of a path, the properties of an instance, the
// arguments of a call, the members of a class. Names match in any case; lookups in long lists go
// through an index. Copies are deep.
#ifndef CIMCLIENT_NAMEDVALUES_H
#define CIMCLIENT_NAMEDVALUES_H

#include "data.h"

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace cimclient {

struct Members;

struct NamedValue {
    NamedValue(std::string valueName, Data value);
    NamedValue(const NamedValue& other);
    NamedValue(NamedValue&&) noexcept;
    NamedValue& operator=(NamedValue&&) noexcept;
    ~NamedValue();

    std::string name;
    Data data;
    // What a property, method or parameter carries; null when that is nothing.
    std::unique_ptr<Members> members;
    // A key property; it stays one while its value is null.
    bool key = false;
};

class NamedValues {
public:
    NamedValues();
    NamedValues(const NamedValues& other);
    NamedValues(NamedValues&&) noexcept;
    NamedValues& operator=(NamedValues&&) noexcept;
    ~NamedValues();

    std::size_t size() const { return m_values.size(); }
    void reserve(std::size_t count) { m_values.reserve(count); }
    const NamedValue& operator[](std::size_t index) const { return m_values[index]; }
    auto begin() const { return m_values.begin(); }
    auto end() const { return m_values.end(); }
    auto rbegin() const { return m_values.rbegin(); }
    auto rend() const { return m_values.rend(); }

    // The value of that name in any case, or null; it stays where it is until the next append.
    const NamedValue* find(std::string_view name) const;
    NamedValue* find(std::string_view name);

    // What the value of that name carries: an empty list when nothing, null when there is no such
    // value.
    const NamedValues* membersOf(std::string_view name, NamedValues Members::*list) const;
    const NamedValues* qualifiersOf(std::string_view name) const;

    // Does not look whether the name is there.
    NamedValue& append(NamedValue value);
    // CMPI_RC_ERR_ALREADY_EXISTS, and nothing changes, when the name is there.
    CMPIrc add(std::string_view name, Data data);

    // What the getters of the function tables return: borrowed data, and for an index the name as a
    // new string. `missing` is the code for what is not there.
    CMPIData get(const char* name, CMPIrc missing, CMPIStatus* rc) const;
    CMPIData getAt(unsigned int index, CMPIString** name, CMPIrc missing, CMPIStatus* rc) const;
    unsigned int count(CMPIStatus* rc) const;

private:
    using Index = std::unordered_multimap<std::size_t, std::size_t>;

    void index(std::size_t position);

    std::vector<NamedValue> m_values;
    std::unique_ptr<Index> m_index;
};

struct Members {
    NamedValues qualifiers;
    NamedValues parameters;
};

} // namespace cimclient

#endif
