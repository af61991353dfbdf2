// What the renderer adds to a show on top of its CIM calls: one prepared target in each form, its
// bytes going nowhere.
#include "output/propvalue.h"
#include "output/showform.h"
#include "velclp/cimhandle.h"
#include "velclp/coutputer.h"
#include "velclp/transport.h"

#include <CimClientLib/native.h>
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <unistd.h>

using namespace velmora_clp;

namespace {

// Twenty properties, as a computer system has them: texts, numbers with names, arrays.
std::vector<ShownProperty> properties() {
    std::vector<ShownProperty> list;
    const CimString text(native_new_CMPIString("Service processor of node A", nullptr));
    const CimArray map(native_new_CMPIArray(12, CMPI_uint16, nullptr));
    for (int i = 0; i < 20; ++i) {
        CMPIData data = {CMPI_uint16, CMPI_goodValue, {}};
        data.value.uint16 = static_cast<CMPIUint16>(i % 12);
        if (i % 3 == 1) {
            data.type = CMPI_string;
            data.value.string = text.get();
        } else if (i % 3 == 2) {
            data.type = CMPI_uint16A;
            data.value.array = map.get();
        }
        OwnedPropValue value = copyValue(data);
        value->values = cimClone(map.get()).release();
        value->valuemap = cimClone(map.get()).release();
        list.push_back({"PropertyNumber" + std::to_string(i), std::move(value)});
    }
    return list;
}

// Standard output goes to /dev/null while this lives: the benchmark's own report needs it.
class Nowhere {
public:
    Nowhere() : m_saved(dup(STDOUT_FILENO)) {
        std::cout.flush();
        const int null = open("/dev/null", O_WRONLY);
        dup2(null, STDOUT_FILENO);
        close(null);
    }
    ~Nowhere() {
        std::cout.flush();
        dup2(m_saved, STDOUT_FILENO);
        close(m_saved);
    }

private:
    int m_saved;
};

void renderTarget(benchmark::State& state, int form) {
    const std::vector<ShownProperty> shown = properties();
    const std::vector<std::string> verbs = {"cd", "exit", "help", "set", "show", "version"};
    const ShownAssociation association = {"systemdevice",
                                          {{"PartComponent", "/admin1/system1/sensor7", true},
                                           {"GroupComponent", "/admin1/system1", true}}};
    Transport transport("std", 0);
    const Nowhere nowhere;
    for (auto _ : state) {
        const auto target = ShowForm::make(form, transport);
        target->openTarget("/admin1/system1");
        target->properties(shown);
        target->verbs(verbs, false);
        target->openAssociations();
        for (int i = 0; i < 10; ++i)
            target->association(association, "/admin1/system1");
        target->closeAssociations();
        target->targets({"sp1", "log1", "sensor7"});
        target->closeInstance();
        target->closeTarget();
    }
    state.SetItemsProcessed(state.iterations());
}

void collectValues(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(properties());
}

} // namespace

BENCHMARK_CAPTURE(renderTarget, text, COutputer::TEXT_FORM);
BENCHMARK_CAPTURE(renderTarget, keyword, COutputer::KEYWORD_FORM);
BENCHMARK_CAPTURE(renderTarget, clpxml, COutputer::CLPXML_FORM);
BENCHMARK(collectValues);

BENCHMARK_MAIN();
