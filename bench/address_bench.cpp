// How long addresses take, forward and reverse, by the number of cached objects of one class. The
// cache is all that is measured: the client behind it refuses every call.
#include "tests/support/run_directory.h"
#include "velclp/addrsvc.h"
#include "velclp/cimhandle.h"
#include "velclp/core_misc.h"

#include <CimClientLib/native.h>
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <iostream>
#include <memory>

namespace {

using namespace velmora_clp;

const char* const schema =
    "[zorm_admindomain]\nchildren:zorm_has=zorm_fan\n(admin_1)\n(end)\n[end]\n"
    "[zorm_fan]\nparent=zorm_admindomain\n(fan_1)\n(end)\n[end]\n";

// A client that must not be called: an address that is cached costs no call.
CMCIClient* noClient() {
    static CMCIClientFT table = {};
    static CMCIClient client = {nullptr, &table};
    return &client;
}

CimPath fan(long number) {
    CimStatus status;
    CimPath path(newCMPIObjectPath("root/zorm", "ZORM_Fan", status.out()));
    const std::pair<const char*, std::string> keys[] = {
        {"SystemCreationClassName", "ZORM_ComputerSystem"},
        {"SystemName", "node-a"},
        {"CreationClassName", "ZORM_Fan"},
        {"DeviceID", "fan-" + std::to_string(number)}};
    for (const auto& [name, text] : keys) {
        const CimString value(native_new_CMPIString(text.c_str(), status.out()));
        CMPIValue data = {};
        data.string = value.get();
        path->ft->addKey(path.get(), name, &data, CMPI_string);
    }
    return path;
}

std::string address(long number) {
    return "/admin1/fan" + std::to_string(number);
}

// A database with that many fans, made once for all measurements.
class Cache {
public:
    static Cache& with(long count) {
        static std::unique_ptr<Cache> current;
        if (!current || current->m_count != count) {
            current.reset();
            current.reset(new Cache(count));
        }
        return *current;
    }
    CLPAddrSVC service() const { return CLPAddrSVC(noClient()); }
    // An object that is spread over the table from one call to the next.
    long next() { return m_next = (m_next + 7919) % m_count + 1; }

private:
    explicit Cache(long count) : m_count(count) {
        m_directory.write("schema.conf", schema);
        m_directory.use();
        std::string rows;
        for (long i = 1; i <= count; ++i)
            rows += row(i);
        m_directory.execute("clp.db3", "BEGIN; INSERT INTO addrsvc_seq VALUES('/'," +
                                           std::to_string(count + 1) + ");" + rows + "COMMIT");
    }
    static std::string row(long i) {
        const std::string id = std::to_string(i);
        std::string sql = "INSERT INTO addrsvc_clp VALUES('" + address(i) + "','ZORM_Fan'," + id +
                          ",'root/zorm');INSERT INTO addrsvc_cim VALUES";
        sql += "(" + id + ",'SystemCreationClassName','ZORM_ComputerSystem',5632),";
        sql += "(" + id + ",'SystemName','node-a',5632),";
        sql += "(" + id + ",'CreationClassName','ZORM_Fan',5632),";
        sql += "(" + id + ",'DeviceID','fan-" + id + "',5632);";
        return sql;
    }

    RunDirectory m_directory;
    long m_count;
    long m_next = 0;
};

void fail(benchmark::State& state, long number) {
    state.SkipWithError(("not found: " + address(number)).c_str());
}

void forward(benchmark::State& state) {
    Cache& cache = Cache::with(state.range(0));
    CLPAddrSVC service(noClient());
    for (auto unused : state) {
        (void)unused;
        const long number = cache.next();
        const CimPaths found(service.getCIMObjectPath(CLPAddrpath("/admin1", address(number))));
        if (found.size() != 1)
            return fail(state, number);
    }
}

void reverse(benchmark::State& state) {
    Cache& cache = Cache::with(state.range(0));
    CLPAddrSVC service(noClient());
    for (auto unused : state) {
        (void)unused;
        const long number = cache.next();
        state.PauseTiming();
        const CimPath path = fan(number);
        state.ResumeTiming();
        if (service.getUfip(path.get()) != address(number))
            return fail(state, number);
    }
}

// What a command pays before its first look-up.
void openService(benchmark::State& state) {
    Cache::with(state.range(0));
    for (auto unused : state) {
        (void)unused;
        CLPAddrSVC service(noClient());
        benchmark::DoNotOptimize(&service);
    }
}

void writeObject(benchmark::State& state) {
    Cache::with(state.range(0));
    CLPAddrSVC service(noClient());
    long number = state.range(0) * 10;
    for (auto unused : state) {
        (void)unused;
        ++number;
        const CimPath path = fan(number);
        service.addCacheItem(address(number), path.get(), "root/zorm");
    }
}

BENCHMARK(openService)->Arg(100)->Arg(10000)->Arg(100000);
BENCHMARK(forward)->Arg(100)->Arg(10000)->Arg(100000);
BENCHMARK(reverse)->Arg(100)->Arg(10000)->Arg(100000);
BENCHMARK(writeObject)->Arg(100)->Iterations(1000);

} // namespace

BENCHMARK_MAIN();
