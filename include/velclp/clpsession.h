// The process's one CLP session: the session properties of DSP0214 (default target, output
// settings, keep time), the CIM instance that shows the session to the outside, and the table of
// the commands that are alive. The properties live outside the process, in a row of the session
// database or, against another host, in the CIM instance; every getter reads them afresh.
#ifndef VELCLP_CLPSESSION_H
#define VELCLP_CLPSESSION_H

#include "velclp/cimhandle.h"
#include "velclp/clpcommand.h"

#include <atomic>
#include <map>
#include <string>

#include <pthread.h>

namespace velmora_clp {

struct sSessionParams {
    std::string host;
    std::string port;
    std::string user;
    bool local; // the CIM server is this controller's own
};

// The kinds of an element's value.
enum : int { SESSION_NUMBER = 0, SESSION_FLAG = 1, SESSION_TEXT = 2 };

// The value of one element: the member of its kind. The text is made by `new[]` and freed by
// whoever asked.
union sResult {
    int number;
    bool flag;
    char* text;
};

class CLPSession {
public:
    // The columns of the session's row.
    enum Element : int {
        KeepTime = 0,
        OEMVelmora_pid,
        WaitBehavior,
        DisplayOption,
        OutputCount,
        OutputFormat,
        OutputLanguage,
        OutputOrder,
        OutputPosition,
        OutputVerbosity,
        CurrentDefaultTarget,
        ElementCount
    };

    // Makes the session on the first call. Throws a std::string when the CIM server refuses the
    // session's instance; a server that cannot be reached ends the process.
    static void createInstance(sSessionParams* params);
    // Null before createInstance.
    static CLPSession* getInstance();

    CLPSession(const CLPSession&) = delete;
    CLPSession& operator=(const CLPSession&) = delete;
    // Removes the session's row.
    virtual ~CLPSession();

    // The row's id; -1 for a session against another host and for one without a row.
    int getSessionId() const;
    // The CIM path of the session's own object; borrowed, lives as long as the session.
    CMPIObjectPath* getObjectPath() const;

    // A value that cannot be read is the one that was last read or set.
    int getKeepTime(); // seconds
    void setKeepTime(int seconds);
    bool getWaitBehavior();
    void setWaitBehavior(bool wait);
    void getDisplayOption(std::string& value);
    void setDisplayOption(const std::string& value);
    int getOutputCount();
    void setOutputCount(int count);
    void getOutputFormat(std::string& value); // the CIM code: "2" text, "4" keyword, "5" clpxml
    void setOutputFormat(const std::string& value);
    void getOutputLanguage(std::string& value);
    void setOutputLanguage(const std::string& value);
    void getOutputOrder(std::string& value);
    void setOutputOrder(const std::string& value);
    void getOutputPosition(std::string& value);
    void setOutputPosition(const std::string& value);
    void getOutputVerbosity(std::string& value);
    void setOutputVerbosity(const std::string& value);
    void getCurrentDefaultTarget(std::string& value);
    void setCurrentDefaultTarget(const std::string& value);

    // The table of living commands, keyed by job id; commands are borrowed. Any thread; never from
    // a signal handler. Null commands are ignored.
    void insertCommand(CLPCommand* command);
    void removeCommand(CLPCommand* command);
    CLPCommand* findCommand(int jobid);
    // Asks a command to stop while the table holds it fast; false when there is none.
    bool stopCommand(int jobid, CLPCommand::SIG sig);
    // Kills the first command in the foreground; gives its job id, or -1 when there is none.
    int stopFGCommand();
    void killallCommand();
    void stopallCommand();
    bool allCommandDone();

private:
    explicit CLPSession(sSessionParams* params);
    void createCimInstance();
    void CLPSessionLocal();
    int getNumber(Element element, int kind, int& cached);
    void setNumber(Element element, int kind, int& cached, int value);
    void getText(Element element, std::string& cached, std::string& value);
    void setText(Element element, std::string& cached, const std::string& value);
    bool readRemote(Element element, std::string& text);
    void writeRemote(Element element, const std::string& text);
    void stopAll(CLPCommand::SIG sig);

    // Read by commands that still end while the process leaves.
    static std::atomic<CLPSession*> _pIns;
    static pthread_mutex_t m_commandLock;

    bool m_local;
    int m_id;
    int m_keepTime;
    int m_pid;
    int m_waitBehavior;
    std::string m_displayOption;
    int m_outputCount;
    std::string m_outputFormat;
    std::string m_outputLanguage;
    std::string m_outputOrder;
    std::string m_outputPosition;
    std::string m_outputVerbosity;
    std::string m_currentDefaultTarget;
    std::string m_host;
    std::string m_port;
    std::string m_user;
    CimClient m_client;
    CimPath m_path;
    CimInstance m_instance;
    std::map<int, CLPCommand*> m_commands;
};

// The column of an element, which is also the CIM property's name; "" for no element.
const char* sessionColumn(int element);

// Reads one element of the row `id`: `type` 0 a number, 1 a flag, anything else a text. Without a
// row, or with an empty text, the result stays as it is.
void GetElementFromDB(int id, int element, int type, sResult& result);

// Writes one element of the row `id`: the argument is an int for types 0 and 1, a const char* for
// type 2.
void SetElementToDB(int id, int element, int type, ...);

} // namespace velmora_clp

#endif
