#include "velclp/clpsession.h"

#include "core/cimconnect.h"
#include "schema/cimnamespace.h"
#include "velclp/assertion.h"
#include "velclp/clpcommand.h"
#include "velclp/dbstatement.h"
#include "velclp/locations.h"
#include "velclp/log.h"
#include "velclp/threadguard.h"

#include <CimClientLib/native.h>
#include <boost/lexical_cast.hpp>

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace velmora_clp {

namespace {
const char* const SESSION_CLASS = "ZORM_CLPProtocolEndpoint";
const char* const PID_PROPERTY = "OEMVelmora_pid";
} // namespace

std::atomic<CLPSession*> CLPSession::_pIns{nullptr};
pthread_mutex_t CLPSession::m_commandLock = PTHREAD_MUTEX_INITIALIZER;

void CLPSession::createInstance(sSessionParams* params) {
    const char* const function = "CLP.CLPSession.createInstance";
    VELCLP_TRACE(function);
    static CLPSession session(params);
    _pIns = &session;
}

CLPSession* CLPSession::getInstance() {
    return _pIns;
}

CLPSession::CLPSession(sSessionParams* params)
    : m_local(params->local),
      m_id(-1),
      m_keepTime(0),
      m_pid(getpid()),
      m_waitBehavior(0),
      m_outputCount(0),
      m_host(params->host),
      m_port(params->port),
      m_user(params->user),
      m_client(connectCim(m_host, m_port, m_user)) {
    const char* const function = "CLP.CLPSession.CLPSession";
    VELCLP_TRACE(function);
    VELCLP_ASSERT(m_client != nullptr, "_cc!=__null");
    createCimInstance();
    if (m_local)
        CLPSessionLocal();
}

void CLPSession::createCimInstance() {
    CimStatus status;
    const CimPath path(newCMPIObjectPath(DEFAULT_NAMESPACE, SESSION_CLASS, status.out()));
    m_instance.reset(native_new_CMPIInstance(path.get(), status.out()));
    setCimText(m_instance.get(), PID_PROPERTY, std::to_string(m_pid));
    m_path.reset(
        m_client->ft->createInstance(m_client.get(), path.get(), m_instance.get(), status.out()));
    if (!status.ok() || !m_path) {
        const std::string reason = "Create CLPSession Instance Error.(" +
                                   std::to_string(static_cast<int>(status.rc())) + ") " +
                                   cimText(status.get()->msg);
        VELCLP_LOG_FAILURE("CLP.CLPSession.createCimInstance", "%s", reason.c_str());
        throw reason;
    }
    m_path->ft->setNameSpace(m_path.get(), DEFAULT_NAMESPACE);
}

void CLPSession::CLPSessionLocal() {
    const char* const function = "CLP.CLPSession.CLPSessionLocal";
    VELCLP_TRACE(function);
    databaseWork(function, [&] {
        DbStatement statement(function, Locations::get().sessionDatabase);
        DBResultSet& row = statement.query("SELECT id FROM CLPSession where OEMVelmora_pid = '" +
                                           std::to_string(m_pid) + "'");
        if (row.next()) {
            m_id = row.getInt("id");
            VELCLP_LOG_VALUE(function, "Created entry id=%d", m_id);
        } else {
            VELCLP_LOG_FAILURE(function, "Get id failed");
        }
    });
}

CLPSession::~CLPSession() {
    const char* const function = "CLP.CLPSession.~CLPSession";
    VELCLP_TRACE(function);
    _pIns = nullptr;
    if (!m_local)
        return;
    databaseWork(function, [&] {
        char sql[512];
        std::snprintf(sql, sizeof sql, "delete from CLPSession where OEMVelmora_pid='%d'", m_pid);
        DbStatement statement(function, Locations::get().sessionDatabase);
        if (statement.update(sql) != 0)
            VELCLP_LOG_FAILURE(function, "Delete CLPSession Entry Failed.Insert statement is:%s",
                               sql);
    });
}

int CLPSession::getSessionId() const {
    return m_id;
}

CMPIObjectPath* CLPSession::getObjectPath() const {
    return m_path.get();
}

bool CLPSession::readRemote(Element element, std::string& text) {
    const char* const function = "CLP.CLPSession.readRemote";
    const char* const name = sessionColumn(element);
    char* names[] = {const_cast<char*>(name), nullptr};
    CimStatus status;
    // The fetch shows that the server answers. The value is what the setters stored here.
    const CimInstance fetched(
        m_client->ft->getInstance(m_client.get(), m_path.get(), 0, names, status.out()));
    if (!status.ok()) {
        VELCLP_LOG_FAILURE(function, "get %s failed=[%d]", name, static_cast<int>(status.rc()));
        return false;
    }
    const CMPIData data = m_instance->ft->getProperty(m_instance.get(), name, status.out());
    if (!status.ok() || (data.state & CMPI_nullValue) != 0)
        return false;
    text = cimValueText(data.type, data.value);
    return true;
}

void CLPSession::writeRemote(Element element, const std::string& text) {
    const char* const name = sessionColumn(element);
    char* names[] = {const_cast<char*>(name), nullptr};
    setCimText(m_instance.get(), name, text);
    const CimStatus status(
        m_client->ft->setInstance(m_client.get(), m_path.get(), m_instance.get(), 0, names));
    if (!status.ok())
        VELCLP_LOG_FAILURE("CLP.CLPSession.writeRemote", "set %s failed=[%d]", name,
                           static_cast<int>(status.rc()));
}

int CLPSession::getNumber(Element element, int kind, int& cached) {
    if (m_local) {
        sResult result{};
        if (kind == SESSION_FLAG) {
            result.flag = cached != 0;
            GetElementFromDB(m_id, element, kind, result);
            cached = result.flag ? 1 : 0;
        } else {
            result.number = cached;
            GetElementFromDB(m_id, element, kind, result);
            cached = result.number;
        }
        return cached;
    }
    std::string text;
    if (readRemote(element, text)) {
        try {
            cached = boost::lexical_cast<int>(text);
        } catch (const boost::bad_lexical_cast&) {
            VELCLP_LOG_FAILURE("CLP.CLPSession.getNumber", "%s is no number=[%s]",
                               sessionColumn(element), text.c_str());
        }
    }
    return cached;
}

void CLPSession::setNumber(Element element, int kind, int& cached, int value) {
    cached = value;
    if (m_local)
        SetElementToDB(m_id, element, kind, value);
    else
        writeRemote(element, std::to_string(value));
}

void CLPSession::getText(Element element, std::string& cached, std::string& value) {
    if (m_local) {
        sResult result{};
        GetElementFromDB(m_id, element, SESSION_TEXT, result);
        const std::unique_ptr<char[]> text(result.text);
        if (text)
            cached = text.get();
    } else {
        readRemote(element, cached);
    }
    value = cached;
}

void CLPSession::setText(Element element, std::string& cached, const std::string& value) {
    cached = value;
    if (m_local)
        SetElementToDB(m_id, element, SESSION_TEXT, value.c_str());
    else
        writeRemote(element, value);
}

int CLPSession::getKeepTime() {
    return getNumber(KeepTime, SESSION_NUMBER, m_keepTime);
}

void CLPSession::setKeepTime(int seconds) {
    setNumber(KeepTime, SESSION_NUMBER, m_keepTime, seconds);
}

bool CLPSession::getWaitBehavior() {
    return getNumber(WaitBehavior, SESSION_FLAG, m_waitBehavior) != 0;
}

void CLPSession::setWaitBehavior(bool wait) {
    setNumber(WaitBehavior, SESSION_FLAG, m_waitBehavior, wait ? 1 : 0);
}

void CLPSession::getDisplayOption(std::string& value) {
    getText(DisplayOption, m_displayOption, value);
}

void CLPSession::setDisplayOption(const std::string& value) {
    setText(DisplayOption, m_displayOption, value);
}

int CLPSession::getOutputCount() {
    return getNumber(OutputCount, SESSION_NUMBER, m_outputCount);
}

void CLPSession::setOutputCount(int count) {
    setNumber(OutputCount, SESSION_NUMBER, m_outputCount, count);
}

void CLPSession::getOutputFormat(std::string& value) {
    getText(OutputFormat, m_outputFormat, value);
}

void CLPSession::setOutputFormat(const std::string& value) {
    setText(OutputFormat, m_outputFormat, value);
}

void CLPSession::getOutputLanguage(std::string& value) {
    getText(OutputLanguage, m_outputLanguage, value);
}

void CLPSession::setOutputLanguage(const std::string& value) {
    setText(OutputLanguage, m_outputLanguage, value);
}

void CLPSession::getOutputOrder(std::string& value) {
    getText(OutputOrder, m_outputOrder, value);
}

void CLPSession::setOutputOrder(const std::string& value) {
    setText(OutputOrder, m_outputOrder, value);
}

void CLPSession::getOutputPosition(std::string& value) {
    getText(OutputPosition, m_outputPosition, value);
}

void CLPSession::setOutputPosition(const std::string& value) {
    setText(OutputPosition, m_outputPosition, value);
}

void CLPSession::getOutputVerbosity(std::string& value) {
    getText(OutputVerbosity, m_outputVerbosity, value);
}

void CLPSession::setOutputVerbosity(const std::string& value) {
    setText(OutputVerbosity, m_outputVerbosity, value);
}

void CLPSession::getCurrentDefaultTarget(std::string& value) {
    getText(CurrentDefaultTarget, m_currentDefaultTarget, value);
}

void CLPSession::setCurrentDefaultTarget(const std::string& value) {
    setText(CurrentDefaultTarget, m_currentDefaultTarget, value);
}

} // namespace velmora_clp
