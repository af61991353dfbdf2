// The owner of one CMPIData: the object in it, if there is one, is released with it. Containers
// hold their values as Data and lend out the plain CMPIData.
#ifndef CIMCLIENT_DATA_H
#define CIMCLIENT_DATA_H

#include <CimClientLib/cmci.h>

namespace cimclient {

class Data {
public:
    // Of no type, and null.
    Data() { m_data.state = CMPI_nullValue; }
    // Null, of the given type.
    explicit Data(CMPIType type) : Data() { m_data.type = type; }
    // Takes the value over.
    Data(CMPIType type, CMPIValue value, CMPIValueState state = CMPI_goodValue);
    Data(Data&& other) noexcept;
    Data& operator=(Data&& other) noexcept;
    // Copies are deep.
    Data(const Data& other) : Data(copyOf(other.m_data)) {}
    Data& operator=(const Data& other) { return *this = Data(other); }
    ~Data();

    // Owners of one object each; null pointers are allowed.
    static Data ofString(CMPIString* string);
    static Data ofText(const char* text);
    static Data ofReference(CMPIObjectPath* path);
    static Data ofInstance(CMPIInstance* instance);
    static Data ofDateTime(CMPIDateTime* dateTime);
    static Data ofClass(CMPIConstClass* cls);
    // Type is the array's element type with the array bit.
    static Data ofArray(CMPIArray* array);

    // A deep copy of what a caller passed to addKey, addArg or setProperty: CMPI_chars is the text
    // itself in place of the value's address. CMPI_RC_ERR_INVALID_PARAMETER when an object type
    // comes without a value; a number without one is 0.
    static CMPIrc fromCaller(const CMPIValue* value, CMPIType type, Data& result);

    // A deep copy of borrowed data.
    static Data copyOf(const CMPIData& data);

    const CMPIData& get() const { return m_data; }
    CMPIType type() const { return m_data.type; }
    // Null by its state, or an object type without an object.
    bool isNull() const;

    void addState(CMPIValueState bits) { m_data.state |= bits; }
    void removeState(CMPIValueState bits) {
        m_data.state = static_cast<CMPIValueState>(m_data.state & ~bits);
    }

    // Hands the value over to the caller.
    CMPIData release();

private:
    CMPIData m_data{};
};

// Values of these types are pointers to objects.
bool isObjectType(CMPIType type);

} // namespace cimclient

#endif
