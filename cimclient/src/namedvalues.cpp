#include "namedvalues.h"

#include "objects.h"
#include "status.h"
#include "text.h"

#include <algorithm>
#include <utility>

namespace cimclient {

namespace {

// Shorter lists are searched faster without an index.
constexpr std::size_t indexFrom = 64;

} // namespace

NamedValue::NamedValue(std::string valueName, Data value)
    : name(std::move(valueName)), data(std::move(value)) {}

NamedValue::NamedValue(NamedValue&&) noexcept = default;
NamedValue& NamedValue::operator=(NamedValue&&) noexcept = default;
NamedValue::~NamedValue() = default;

NamedValue::NamedValue(const NamedValue& other)
    : name(other.name),
      data(other.data),
      members(other.members ? std::make_unique<Members>(*other.members) : nullptr),
      key(other.key) {}

NamedValues::NamedValues() = default;
NamedValues::NamedValues(NamedValues&&) noexcept = default;
NamedValues& NamedValues::operator=(NamedValues&&) noexcept = default;
NamedValues::~NamedValues() = default;

NamedValues::NamedValues(const NamedValues& other) {
    reserve(other.size());
    for (const NamedValue& value : other)
        append(value);
}

const NamedValue* NamedValues::find(std::string_view name) const {
    if (!m_index) {
        const auto found =
            std::find_if(m_values.begin(), m_values.end(),
                         [name](const NamedValue& value) { return equalNoCase(value.name, name); });
        return found == m_values.end() ? nullptr : &*found;
    }
    const auto [first, last] = m_index->equal_range(hashNoCase(name));
    const auto found = std::find_if(first, last, [this, name](const auto& entry) {
        return equalNoCase(m_values[entry.second].name, name);
    });
    return found == last ? nullptr : &m_values[found->second];
}

NamedValue* NamedValues::find(std::string_view name) {
    return const_cast<NamedValue*>(std::as_const(*this).find(name));
}

const NamedValues* NamedValues::membersOf(std::string_view name, NamedValues Members::*list) const {
    static const NamedValues none;
    const NamedValue* value = find(name);
    if (!value)
        return nullptr;
    return value->members ? &(*value->members.*list) : &none;
}

const NamedValues* NamedValues::qualifiersOf(std::string_view name) const {
    return membersOf(name, &Members::qualifiers);
}

void NamedValues::index(std::size_t position) {
    m_index->emplace(hashNoCase(m_values[position].name), position);
}

NamedValue& NamedValues::append(NamedValue value) {
    m_values.push_back(std::move(value));
    if (m_index) {
        index(m_values.size() - 1);
    } else if (m_values.size() == indexFrom) {
        m_index = std::make_unique<Index>();
        for (std::size_t position = 0; position < m_values.size(); ++position)
            index(position);
    }
    return m_values.back();
}

CMPIrc NamedValues::add(std::string_view name, Data data) {
    if (find(name))
        return CMPI_RC_ERR_ALREADY_EXISTS;
    append({std::string(name), std::move(data)});
    return CMPI_RC_OK;
}

CMPIData NamedValues::get(const char* name, CMPIrc missing, CMPIStatus* rc) const {
    const NamedValue* value = name ? find(name) : nullptr;
    if (!value)
        return noData(rc, missing);
    setOk(rc);
    return value->data.get();
}

CMPIData NamedValues::getAt(unsigned int position, CMPIString** name, CMPIrc missing,
                            CMPIStatus* rc) const {
    if (position >= m_values.size())
        return noData(rc, missing);
    setOk(rc);
    if (name)
        *name = newString(m_values[position].name.c_str());
    return m_values[position].data.get();
}

unsigned int NamedValues::count(CMPIStatus* rc) const {
    setOk(rc);
    return static_cast<unsigned int>(m_values.size());
}

} // namespace cimclient
