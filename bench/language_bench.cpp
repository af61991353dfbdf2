// What a line costs before its verb runs, and what the schema's getters cost: both are paid many
// times for every command.
#include "tests/unit/schema_file.h"
#include "velclp/parser.h"
#include "velclp/processingerror.h"
#include "velclp/schema.h"
#include "velclp/token.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

using velmora_clp::CLPSchema;

void parseLine(benchmark::State& state, const std::string& line) {
    for (auto _ : state) {
        CLPToken token;
        token._Options.addNode({"option"});
        velmora_clp::ProcessingError error;
        benchmark::DoNotOptimize(velmora_clp::CLPParser().parse(line, &token, &error));
    }
}
BENCHMARK_CAPTURE(parseLine, show, std::string("show -display properties /admin1/system1"));
BENCHMARK_CAPTURE(parseLine, all_of_show,
                  std::string("show -all -level 2 -output format=clpxml,number=1-50,order=reverse "
                              "-display targets=(sp,log),properties /admin1/system1 name==value"));
BENCHMARK_CAPTURE(parseLine, refused, std::string("show -output format=csv /admin1"));

void completeLine(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(velmora_clp::CLPParser().tabContinue("show -l"));
}
BENCHMARK(completeLine);

// The content of a schema of this many classes.
std::string contentOf(long classes) {
    std::string content;
    for (long i = 0; i < classes; ++i) {
        const std::string number = std::to_string(i);
        content += "[ZORM_Class" + number + "]\nparent=zorm_class0\nverbs=show:cd:help\n" +
                   "assoc=zorm_has\nchildren:zorm_has=ZORM_Class" + number + "\n(tag" + number +
                   "_1)\nufit=nature:name\nproperties=Name:EnabledState\n" +
                   "command:start=a:b:c\n(end)\n[end]\n";
    }
    return content;
}

void querySchema(benchmark::State& state) {
    const SchemaFile file(contentOf(state.range(0)));
    const CLPSchema schema;
    const std::string tag = "tag1";
    const std::string cimclass = "ZORM_Class1";
    for (auto _ : state) {
        benchmark::DoNotOptimize(schema.getCIMClass(tag).data());
        benchmark::DoNotOptimize(schema.getUfit(tag).first.data());
        benchmark::DoNotOptimize(schema.getRequiredProperties(tag).data());
        benchmark::DoNotOptimize(schema.getType(cimclass).data());
        benchmark::DoNotOptimize(schema.getChildren_ufcts(cimclass).data());
        benchmark::DoNotOptimize(schema.getDefaultUfct(cimclass).data());
    }
    state.SetItemsProcessed(state.iterations() * 6);
}
BENCHMARK(querySchema)->Arg(10)->Arg(100)->Arg(1000);

void loadSchema(benchmark::State& state) {
    const SchemaFile file(contentOf(state.range(0)));
    for (auto _ : state) {
        const CLPSchema schema;
        benchmark::DoNotOptimize(&schema);
    }
}
BENCHMARK(loadSchema)->Arg(100)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
