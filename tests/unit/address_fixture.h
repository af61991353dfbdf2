// What tests of the address service share: a database of their own, a small schema and a server.
#ifndef VELCLP_TESTS_UNIT_ADDRESS_FIXTURE_H
#define VELCLP_TESTS_UNIT_ADDRESS_FIXTURE_H

#include "tests/support/run_directory.h"
#include "tests/unit/fake_cim.h"
#include "velclp/addrsvc.h"

#include <gtest/gtest.h>

namespace velmora_clp {

// The tree: admin > system|blade > sp > log (splog inside), user; system > sensor, slot, fan, log.
inline const char* const addressSchema =
    "[zorm_admindomain]\n"
    "children:zorm_has=zorm_computersystem\n"
    "(admin_1)\n(end)\n"
    "[end]\n"
    "[zorm_computersystem]\n"
    "alias=cim_computersystem\n"
    "parent=zorm_admindomain\n"
    "children:zorm_device=zorm_sensor:zorm_slot:zorm_fan\n"
    "children:zorm_log=zorm_recordlog\n"
    "children:zorm_part=zorm_sp\n"
    "(system_1)\n(end)\n"
    "(blade_1)\n"
    "filter:dedicated=blade:bladecenter\n"
    "filter:enabledstate=enabled\n"
    "(end)\n"
    "[end]\n"
    "[zorm_sp]\n"
    "parent=zorm_computersystem\n"
    "children:zorm_splog=zorm_eventlog\n"
    "children:zorm_user=zorm_account\n"
    "(sp_1)\n(end)\n"
    "[end]\n"
    "[zorm_account]\n"
    "parent=zorm_sp\n"
    "type=dynamic\n"
    "(user_1)\n(end)\n"
    "[end]\n"
    "[zorm_sensor]\n"
    "parent=zorm_computersystem\n"
    "(sensor_1)\nufit=property:sensornumber\n(end)\n"
    "[end]\n"
    "[zorm_slot]\n"
    "parent=zorm_computersystem\n"
    "(slot_1)\nufit=property:location#2\n(end)\n"
    "[end]\n"
    "[zorm_fan]\n"
    "parent=zorm_computersystem\n"
    "(oem_fan_1)\n(end)\n"
    "[end]\n"
    "[zorm_recordlog]\n"
    "parent=zorm_computersystem\n"
    "children:zorm_record=zorm_sellogentry\n"
    "(log_1)\nvirtualufcts=splog:sp:system,nolog:blade\n(end)\n"
    "[end]\n"
    "[zorm_eventlog]\n"
    "parent=zorm_sp\n"
    "(splog_1)\nrealufct=log\n(end)\n"
    "[end]\n"
    "[zorm_sellogentry]\n"
    "parent=zorm_recordlog\n"
    "type=dynamic\n"
    "(record_1)\n(end)\n"
    "[end]\n"
    "[zorm_device]\n(device_1)\n(end)\n[end]\n"
    "[zorm_lost]\nparent=zorm_sp\n(lost_1)\n(end)\n[end]\n"
    "[zorm_orphan]\n"
    "(orphan_1)\n(end)\n"
    "[end]\n";

class AddressFixture : public testing::Test {
protected:
    AddressFixture() {
        m_directory.write("schema.conf", addressSchema);
        m_directory.use();
        m_admin = &m_server.add({"ZORM_AdminDomain", {{"Name", "root"}}, {}});
    }

    fakecim::Object& addSystem(const std::string& name,
                               std::map<std::string, fakecim::Value> properties = {}) {
        fakecim::Object& object =
            m_server.add({"ZORM_ComputerSystem",
                          {{"CreationClassName", "ZORM_ComputerSystem"}, {"Name", name}},
                          std::move(properties)});
        m_server.link("ZORM_Has", *m_admin, object);
        return object;
    }
    fakecim::Object& addBelow(const fakecim::Object& parent, const std::string& association,
                              const std::string& cimclass, const std::string& id,
                              std::map<std::string, fakecim::Value> properties = {}) {
        fakecim::Object& object =
            m_server.add({cimclass, {{"InstanceID", id}}, std::move(properties)});
        m_server.link(association, parent, object);
        return object;
    }

    // The keys that the objects of an address show, each the last of its path, joined by blanks.
    std::string resolve(CLPAddrSVC& service, const std::string& address) {
        return names(service.getCIMObjectPath(CLPAddrpath("/admin1", address)));
    }
    static std::string names(std::vector<CMPIObjectPath*> paths) {
        const CimPaths owned(std::move(paths));
        std::string all;
        for (CMPIObjectPath* path : owned) {
            const unsigned int last = path->ft->getKeyCount(path, nullptr) - 1;
            const CMPIData key = path->ft->getKeyAt(path, last, nullptr, nullptr);
            all += (all.empty() ? "" : " ") + cimValueText(key.type, key.value);
        }
        return all;
    }
    std::string addresses() const {
        return m_directory.query("clp.db3", "SELECT ufip FROM addrsvc_clp ORDER BY id");
    }
    std::string counter(const std::string& key) const {
        return m_directory.query("clp.db3",
                                 "SELECT next FROM addrsvc_seq WHERE ufip='" + key + "'");
    }

    RunDirectory m_directory;
    fakecim::Server m_server;
    fakecim::Object* m_admin;
};

} // namespace velmora_clp

#endif
