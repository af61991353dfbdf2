// Memory that runs out while a reply is read costs the call, and nothing else: each allocation of
// an operation fails in turn, those of the XML parser too.
#include "clientfixture.h"

#include <pugixml.hpp>

#include <cstdlib>
#include <functional>
#include <new>

namespace {

// Counts this thread's allocations down to the one that fails.
thread_local long countdown = 0;

bool fails() {
    return countdown > 0 && --countdown == 0;
}

void* allocate(std::size_t size) {
    return fails() ? nullptr : std::malloc(size);
}

} // namespace

void* operator new(std::size_t size) {
    if (void* const memory = allocate(size > 0 ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace velmora_clp {
namespace {

class ClientAllocations : public WithServer {
protected:
    ClientAllocations() { pugi::set_memory_management_functions(allocate, std::free); }
    ~ClientAllocations() override { pugi::set_memory_management_functions(std::malloc, std::free); }

    // Every failing allocation of the operation ends in a status; what it gave, once none fails.
    std::string shownAtLast(const std::function<void()>& prepare,
                            const std::function<std::string()>& operation) {
        for (long n = 1; n < 5000; ++n) {
            prepare();
            countdown = n;
            const std::string shown = operation();
            const bool reached = countdown == 0;
            countdown = 0;
            if (!reached) {
                EXPECT_LT(20, n) << outcome(status);
                return shown;
            }
            EXPECT_TRUE(!shown.empty() || outcome(status).code != 0) << n;
        }
        return "allocates for ever";
    }
    // The text is made when no allocation fails any more.
    template<typename Handle>
    static std::string text(const Handle& handle) {
        const long left = countdown;
        countdown = 0;
        std::string shown = handle ? show(handle.get()) : "";
        countdown = left;
        return shown;
    }

    const std::string path = "<INSTANCENAME CLASSNAME=\"CIM_Thing\"><KEYBINDING NAME=\"Name\">"
                             "<KEYVALUE VALUETYPE=\"string\">a name that is not short</KEYVALUE>"
                             "</KEYBINDING></INSTANCENAME>";
    const std::string instance =
        "<INSTANCE CLASSNAME=\"CIM_Thing\">"
        "<PROPERTY NAME=\"Name\" TYPE=\"string\"><VALUE>a name that is not short</VALUE></PROPERTY>"
        "<PROPERTY.ARRAY NAME=\"States\" TYPE=\"uint16\"><VALUE.ARRAY><VALUE>2</VALUE><VALUE>3"
        "</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>"
        "<PROPERTY NAME=\"When\" TYPE=\"datetime\"><VALUE>20260101000000.000000+000</VALUE>"
        "</PROPERTY><PROPERTY.REFERENCE NAME=\"Other\"><VALUE.REFERENCE>" +
        path + "</VALUE.REFERENCE></PROPERTY.REFERENCE></INSTANCE>";
};

TEST_F(ClientAllocations, ThatFailInAnInstanceCostTheCall) {
    const std::string shown = shownAtLast(
        [&] { server.returns(instance); },
        [&] { return text(CimInstance(table().getInstance(c(), op(), 0, nullptr, rc()))); });
    EXPECT_NE(std::string::npos, shown.find("a name that is not short")) << shown;
    EXPECT_NE(std::string::npos, shown.find("Other=")) << shown;
}

TEST_F(ClientAllocations, ThatFailInAListCostTheCall) {
    const std::string shown = shownAtLast(
        [&] { server.returns(path + path); },
        [&] { return text(CimEnumeration(table().enumInstanceNames(c(), op(), rc()))); });
    EXPECT_NE(std::string::npos, shown.find("a name that is not short")) << shown;
}

TEST_F(ClientAllocations, ThatFailInAMethodsResultCostTheCall) {
    CimArgs out;
    const auto prepare = [&] {
        out.reset(newCMPIArgs(nullptr));
        server.methodReturns("<RETURNVALUE PARAMTYPE=\"uint32\"><VALUE>0</VALUE></RETURNVALUE>"
                             "<PARAMVALUE NAME=\"Job\" PARAMTYPE=\"reference\"><VALUE.REFERENCE>" +
                             path + "</VALUE.REFERENCE></PARAMVALUE>");
    };
    const std::string shown = shownAtLast(prepare, [&] {
        table().invokeMethod(c(), op(), "Run", nullptr, out.get(), rc());
        return text(out);
    });
    EXPECT_NE(std::string::npos, shown.find("a name that is not short")) << shown;
}

} // namespace
} // namespace velmora_clp
