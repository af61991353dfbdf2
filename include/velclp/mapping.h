// The layer between the verbs and the CIM client: one operation for each kind of change that a
// verb can make, pseudo and special methods included. Every operation gives a new JobError, which
// the caller owns, or null for success. Made on the stack of the verb that needs it.
#ifndef VELCLP_MAPPING_H
#define VELCLP_MAPPING_H

#include <CimClientLib/cmci.h>

#include <chrono>
#include <map>
#include <string>
#include <utility>
#include <vector>

class Transport;

namespace velmora_clp {

class JobError;

// The value of an integer by the width of its type: 64-bit values cut to their low 32 bits, -1 for
// a type it does not know. A type that is no integer at all ends the process.
int smExtractCMPIIntValue(const CMPIData& data);

class CLPMapping {
public:
    using TextPairs = std::vector<std::pair<std::string, std::string>>;
    using DataPairs = std::vector<std::pair<std::string, CMPIData*>>;
    using PropertyMap = std::map<std::string, CMPIData*>;

    // Over a client and a transport that the caller keeps; the transport takes progress output of
    // special methods and may be null.
    CLPMapping(CMCIClient* client, Transport* transport);

    // ---- CIM operations (mapping.cpp) ----

    // Makes the object path and the empty instance for a new object of a class tag. Both pointers
    // must be null before; the caller releases what they hold afterwards.
    void smNewInstance(const std::string& ufct, CMPIObjectPath** path, CMPIInstance** ins);

    // Creates the instance; object, null before, gets the new object's path, which the caller
    // releases.
    JobError* smCreateInstance(CMPIObjectPath* path, CMPIInstance* ins, CMPIObjectPath** object);

    JobError* smDeleteInstance(CMPIObjectPath* path);

    // Writes properties by one call. Of an array property the elements that the new value leaves
    // unset keep what they hold, and elements beyond the present length are dropped. The map and
    // its data stay the caller's; it must not be empty and no data null.
    JobError* smSetInstance(CMPIObjectPath* path, const PropertyMap* props);

    // Invokes a method with the given arguments; "RequestStateChange" (one argument) and
    // "DeleteInstance", in any case, are carried out as the operations of that name. outP is not
    // filled. Data that is null ends the process.
    JobError* smInvokeMethod(CMPIObjectPath* path, const std::string& method, const DataPairs* inP,
                             DataPairs* outP);

    // RequestStateChange with RequestedState, or with arguments as they are.
    JobError* smRequestStateChange(CMPIObjectPath* path, int state);
    JobError* smOpRequestStateChange(CMPIObjectPath* path, CMPIArgs* args);
    // The states Enabled, Disabled (Offline for a redirected USB device) and Reset.
    JobError* smStartRSC(CMPIObjectPath* path);
    JobError* smStopRSC(CMPIObjectPath* path);
    JobError* smResetRSC(CMPIObjectPath* path);

    // Asks a power management service for a power state of the target.
    JobError* smRequestPowerStateChange(CMPIObjectPath* pms, CMPIObjectPath* target, int state);

    // The error for a failed CIM operation, never null; a status of rc 0 ends the process. Null,
    // and codes that DSP0200 does not define, give a software error.
    JobError* smProcessOpError(const CMPIStatus* status);

    // The error for the return value of a method that was carried out, null for 0. A value that is
    // no integer ends the process.
    JobError* smProcessRetError(const CMPIData& data);

    // ---- Pseudo and special methods (pseudomethod.cpp, specialmethod.cpp) ----

    // Null when the schema allows the verb on the class tag.
    JobError* smCheckCommand(const std::string& ufct, const std::string& verb);

    // Carries out the pseudo method of a class tag: method is "show", "set" or a verb's word,
    // props the properties named. For "show" outP takes the value and, behind it, the Values and
    // ValueMap arrays where there are some. A tag without pseudo methods gives null.
    JobError* smPseudoMethod(CMPIObjectPath* path, const std::string& ufct,
                             const std::string& method, const TextPairs& props,
                             CMPIArgs* outP = nullptr);

    JobError* SP_PseudoMethod(const std::string& ufct, CMPIObjectPath* path,
                              const std::string& method, const TextPairs& props, CMPIArgs* outP);
    JobError* SYSTEM_PseudoMethod(const std::string& ufct, CMPIObjectPath* path,
                                  const std::string& method, const TextPairs& props,
                                  CMPIArgs* outP);
    JobError* PWRCURR_PseudoMethod(const std::string& ufct, CMPIObjectPath* path,
                                   const std::string& method, const TextPairs& props,
                                   CMPIArgs* outP);
    JobError* NETPORTCFGSVC_PseudoMethod(const std::string& ufct, CMPIObjectPath* path,
                                         const std::string& method, const TextPairs& props,
                                         CMPIArgs* outP);
    JobError* ELEMENTSETTINGDATA_PseudoMethod(const std::string& ufct, CMPIObjectPath* path,
                                              const std::string& method, const TextPairs& props,
                                              CMPIArgs* outP);
    JobError* LOG_PseudoMethod(const std::string& ufct, CMPIObjectPath* path,
                               const std::string& method, const TextPairs& props, CMPIArgs* outP);
    JobError* SPLOG_PseudoMethod(const std::string& ufct, CMPIObjectPath* path,
                                 const std::string& method, const TextPairs& props, CMPIArgs* outP);

    // Carries out the special method of a CIM class; a class without one gives null. args takes
    // output and may be null, as may path where the method needs no object.
    JobError* smSpecialMethod(const std::string& cimclass, const std::string& method,
                              const TextPairs* params, CMPIArgs* args, CMPIObjectPath* path);

    // The firmware update, "installfromuri": element 1 of params holds the URI. Blocks until the
    // update's job has ended, showing progress on the transport.
    JobError* SP_SpecialMethod(const std::string& method, const TextPairs* params, CMPIArgs* args,
                               CMPIObjectPath* path);

    // How long an update's job is left alone between two looks at it; five seconds unless set.
    static void setUpdatePollInterval(std::chrono::milliseconds interval);

private:
    // Invokes a method and turns its failure or its return value into an error.
    JobError* invoke(CMPIObjectPath* path, const char* method, CMPIArgs* in, CMPIArgs* out);
    // Reads a property of the association between a system and its power management service.
    JobError* showSystemProperty(const std::string& ufct, CMPIObjectPath* path,
                                 const std::string& name, CMPIArgs* outP);
    JobError* clearLog(CMPIObjectPath* path, const std::string& method);
    // Shows the progress of an update's job until it has ended; null for one that is not there.
    void followUpdate(CMPIObjectPath* job);
    // The last state that the job was seen in.
    int pollUpdate(CMPIObjectPath* job);
    // Progress output; nothing without a transport.
    void progress(const char* text, bool endLine);

    CMCIClient* cc;
    Transport* transport;
};

} // namespace velmora_clp

#endif
