// What the tests of the mapping's operations share: a small schema, a server with one object, and
// errors in one line.
#ifndef VELCLP_TESTS_UNIT_MAPPING_FIXTURE_H
#define VELCLP_TESTS_UNIT_MAPPING_FIXTURE_H

#include "tests/unit/fake_cim.h"
#include "tests/unit/schema_file.h"

#include "velclp/joberror.h"
#include "velclp/mapping.h"

#include <gtest/gtest.h>

#include <memory>

namespace velmora_clp {

inline const char* const mappingSchema =
    "[zorm_computersystem]\nverbs=show:cd\n"
    "(system_1)\nverbs=start:stop\n(end)\n"
    "(blade_1)\ncimclass=zorm_blade\n(end)\n"
    "[end]\n"
    "[zorm_blade]\nnamespace=root/other\n(bladeset_1)\n(end)\n[end]\n";

class MappingTest : public testing::Test {
protected:
    using Pairs = CLPMapping::TextPairs;

    MappingTest() : m_mapping(m_server.client(), nullptr) {
        m_object = &m_server.add({"ZORM_Thing", {{"Name", "a"}}, {}});
        m_path = m_object->path();
    }

    // The three numbers of an error, "ok" for none.
    static std::string codes(JobError* error) {
        const std::unique_ptr<JobError> owned(error);
        return owned ? std::to_string(owned->getErrorCode()) + "," +
                           std::to_string(owned->getCimstatCode()) + "," +
                           std::to_string(owned->getSeverityCode())
                     : "ok";
    }
    std::string lastCall() const {
        return m_server.calls.empty()
                   ? ""
                   : m_server.calls.back().cimclass + " " + m_server.calls.back().detail;
    }
    std::string pseudo(const char* ufct, const char* method, const Pairs& props,
                       CMPIArgs* out = nullptr) {
        return codes(m_mapping.smPseudoMethod(m_path.get(), ufct, method, props, out));
    }
    using DataPairs = CLPMapping::DataPairs;
    std::string invoke(const char* method, const DataPairs* in, DataPairs* out = nullptr) {
        return codes(m_mapping.smInvokeMethod(m_path.get(), method, in, out));
    }
    fakecim::Object& addAssociate(const char* association, const char* cimclass) {
        fakecim::Object& object = m_server.add({cimclass, {{"Name", cimclass}}, {}});
        m_server.link(association, *m_object, object);
        return object;
    }
    std::string set(const std::map<std::string, CMPIData*>& props) {
        return codes(m_mapping.smSetInstance(m_path.get(), &props));
    }

    SchemaFile m_schema{mappingSchema};
    fakecim::Server m_server;
    CLPMapping m_mapping;
    fakecim::Object* m_object;
    CimPath m_path;
};

} // namespace velmora_clp

#endif
