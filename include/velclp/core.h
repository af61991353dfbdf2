// The engine of one CLP session, and the one object that a host program talks to: it is built with
// the login's USER and privileges in the environment and is then handed one text line at a time.
// A line goes to an outside program, is refused with a processing error, or becomes a command that
// runs on a thread of its own while the engine waits.
#ifndef VELCLP_CORE_H
#define VELCLP_CORE_H

#include "velclp/cimhandle.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

class CLPToken;
class Transport;

namespace velmora_clp {

class CLPCommand;
class ProcessingError;

class CLPCore {
public:
    // Connects to the CIM server and sets up the session; host "localhost" means the controller
    // itself. Throws a std::string for the operator when the environment lacks USER or privileges
    // or the server cannot be reached. The transport outlives the engine.
    CLPCore(const std::string& host, const std::string& port, Transport& transport);
    CLPCore(const CLPCore&) = delete;
    CLPCore& operator=(const CLPCore&) = delete;
    ~CLPCore();

    // Runs one line to its end: 0 to go on with the next one, -1 when the session is to end. On
    // the host's thread only.
    int run(const std::string& line);

    // The verb's command; null for a verb that has none. Throws as CLPCommand's constructor does.
    CLPCommand* createCommand(boost::shared_ptr<CLPToken> token);

    // 0 when the login may use the verb, -1 when not.
    int checkingPrivilege(boost::shared_ptr<CLPToken> token);

    // The current default target.
    std::string CDT();

    // Ends what still runs, waiting two seconds at most, and says so on the transport.
    void terminateSession();

    // Acts on one request in the table job_terminate to stop a command of this process. Any
    // thread, in normal context.
    void terminateJob();

    // The candidates for the word under the cursor: `terms` are the one to three parts of a
    // target, `word` a property name being typed, or empty when the target itself is typed.
    std::vector<std::string> parser_help(const std::vector<std::string>& terms,
                                         const std::string& word);
    // The candidates for an address, from the address cache alone.
    std::vector<std::string> tab_target(const std::string& word);

private:
    void login();
    void openSession();
    bool passThrough(const std::string& line);
    int runParsed(const std::string& line);
    void runToken(boost::shared_ptr<CLPToken> token);
    CLPCommand* commandFor(boost::shared_ptr<CLPToken> token);
    void report(boost::shared_ptr<CLPToken> token, ProcessingError error);

    CimClient m_client;
    std::string m_host;
    std::string m_port;
    std::string m_token;
    unsigned short m_privileges;
    Transport* m_transport; // borrowed
};

// Runs a program with arguments, cut from the line as a shell does, and waits for it. Gives 0.
int run_command(const char* line);

} // namespace velmora_clp

#endif
