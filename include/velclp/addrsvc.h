// The bridge between target addresses and CIM object paths. Addresses are resolved by walking the
// schema's tree on the CIM server; every object met gets an instance number that all processes of
// the controller share and that stays with it, and is kept with its keys in the address database,
// so that a known target costs no CIM call. The way back gives an object path its address.
//
// Nothing here reports to the user: failures come back as an empty vector, an empty text or false,
// with a line in the log. One object belongs to one thread and to one CIM client.
#ifndef VELCLP_ADDRSVC_H
#define VELCLP_ADDRSVC_H

#include "velclp/addrpath.h"

#include <CimClientLib/cmci.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

class DBConnection;

namespace velmora_clp {

class CimPaths;

class CLPAddrSVC {
public:
    // Works over the client, which the caller keeps and which must not be null. Takes a connection
    // to the address database, whose failure is thrown as CDBC_Exception.
    explicit CLPAddrSVC(CMCIClient* client);
    virtual ~CLPAddrSVC();
    CLPAddrSVC(const CLPAddrSVC&) = delete;
    CLPAddrSVC& operator=(const CLPAddrSVC&) = delete;

    // ---- From addresses to objects ----

    // The objects that an address, in user or internal form, stands for; the caller releases them.
    // From the cache when it holds at least one of them, otherwise from the server. Empty when
    // the address names nothing. A class address (".../system*") gives all cached instances.
    std::vector<CMPIObjectPath*> getCIMObjectPath(const CLPAddrpath& path);

    // Whether the address names at least one object.
    bool hasTarget(const CLPAddrpath& path);

    // The association instances, of the class that the tag assoc names, between the objects of two
    // addresses; with an empty ref2 all those of ref1. The caller releases them. ref1 and assoc
    // must not be empty, and neither address may be one of several objects.
    std::vector<CMPIObjectPath*> getCIMObjectPath_Assoc(const std::string& ref1,
                                                        const std::string& assoc, std::string ref2);

    // Fills out with the internal form of in: rooted in /admin1, with virtual class tags where the
    // schema has some. "/" counts as "/admin1". Both may be the same object.
    void internalPath(const CLPAddrpath& in, CLPAddrpath& out);

    // The user form of an internal address: real class tags in place of virtual ones.
    std::string normalUfip(const std::string& ufip);

    // Brings the cache level that holds an internal address up to date, and the levels above it
    // where they are unknown; gives the objects of the address, which the caller releases.
    std::vector<CMPIObjectPath*> refreshCache(const CLPAddrpath& path);

    // Brings one level up to date: the instances of the tag ufct that the association addrassoc
    // gives for the object parent, whose internal address is p_ufip. Rows of vanished objects go,
    // new objects get a number. With an empty p_ufip and the tag "admin" the parent is not used.
    void refreshCacheUfct(const std::string& p_ufip, CMPIObjectPath* parent,
                          const std::string& addrassoc, const std::string& ufct);

    // The association through which the schema reaches the class child from its class parent, or
    // an empty text.
    std::string getAssocClass(const std::string& parent, const std::string& child);

    // Whether what is left of an enumeration of object paths holds this one; uses it up. A path
    // without a namespace counts as one of the default namespace. False for null arguments.
    bool objectExistInCIMOM(CMPIEnumeration* enumeration, CMPIObjectPath* objectpath);

    // The instance number that an object holds itself: its property Prop, or with "Prop#pos" the
    // element of an array property, counted from 1. -1 when it cannot be read; throws
    // boost::bad_lexical_cast when the value is no decimal integer.
    int getUfisFromCIMObjectPath(CMPIObjectPath* path, const std::string& prop);

    // ---- From objects to addresses ----

    // The address of an object, in user form when normal is set, else in internal form; empty when
    // it has none. An object that is not cached is numbered by refreshing the levels above it. The
    // first flag has no effect.
    std::string getUfip(CMPIObjectPath* path, bool flag = true, bool normal = true);

    // The internal address under which the object is cached, or an empty text.
    std::string getUfipFromCache(CMPIObjectPath* path);

    // The same for records of a system event log, found by their key InstanceID alone.
    std::string getUfipFromCacheForSEL(CMPIObjectPath* path);

    // The internal address of an object of the schema class cimclass, by way of its parents on the
    // server; refreshes its level. Empty when no parent is known.
    std::string getUfipFromCIMOM(CMPIObjectPath* path, const std::string& cimclass);

    // Which of the schema's tags of cimclass the object belongs to, by their filters; empty when
    // it cannot be read.
    std::string getUfctFromObject(CMPIObjectPath* path, const std::string& cimclass);

    // Whether a property value is the schema's filter text (lower case), as it stands or as the
    // text that the class's Values qualifier gives for it. Of an array the first element counts.
    bool matchFilter(const std::string& cimclass, const std::string& name, const CMPIData& data,
                     const std::string& value);

    // Enters a created object under the address that the user gave for it; with "*" as its last
    // suffix the next free number is taken. False when the address is of no known class.
    bool setUfip(const CLPAddrpath& path, CMPIObjectPath* object);

    // ---- The cache ----

    // The counter under a key, "/" or an internal parent address, "/" and a class tag; -1 when
    // there is none or it cannot be read.
    int getNextSeq(const std::string& ufip);

    // Writes a counter, as a new one when add is set. id must be above 0. False when that failed.
    bool setNextSeq(const std::string& ufip, int id, bool add);

    // Writes an object with its keys under an internal address. Gives 0; a failure is logged and
    // leaves nothing behind.
    int addCacheItem(const std::string& ufip, CMPIObjectPath* objectpath, const std::string& ns);

    // The cached objects of an internal address, in the order in which they were first seen; the
    // caller releases them. Makes no CIM call, but for one address of a class that is numbered by
    // a property, whose number is read again.
    std::vector<CMPIObjectPath*> getCacheItem(const CLPAddrpath& path);

    // The object path in the row of that number, rebuilt from its keys; the caller releases it.
    // Null when the database failed.
    CMPIObjectPath* createCIMObjectPathFromDB(int id, const std::string& cimclass,
                                              const std::string& ns);

    // Drops the row of one address, in user or internal form, and its keys; rows below it and
    // counters stay. An empty text does nothing.
    void deleteUfip(const std::string& ufip);

    // Drops all rows of a class below a parent with all that is below them; counters stay.
    void emptyCacheUfct(std::string parent, std::string ufct);

    // The cached addresses of a class, given as parent address, "/" and class tag, in user form.
    std::vector<std::string> selectUfip(const std::string& ufst);

    // The last terms, in user form, of the cached addresses that begin with ufst, a parent
    // address, "/" and a class tag or the beginning of one, and that lie directly in the parent.
    std::vector<std::string> selectSubTargets(const std::string& ufst);

private:
    struct ConnectionCloser {
        void operator()(DBConnection* connection) const;
    };
    // Makes a counter that starts at 1, unless there is one.
    void openCounter(const std::string& key);
    // The names of all objects at the top of the tree.
    CMPIEnumeration* enumerateRoot(const std::string& ns, CMPIStatus* status);
    // The object of an address, none when it is no address; more than one ends the process.
    CimPaths resolveOne(const std::string& address, const char* assertion);
    // The instances of an association class that tie an object to another, or to any.
    std::vector<CMPIObjectPath*> associationsBetween(CMPIObjectPath* object,
                                                     const std::string& association,
                                                     CMPIObjectPath* other);
    // Whether an instance passes a tag's filter.
    bool matchTag(const std::string& cimclass, CMPIInstance* instance,
                  const std::vector<std::pair<std::string, std::string>>& filter);
    // The number that a request (0 for any) gives under a counter, which moves behind it; -1 when
    // there is none left.
    int takeNumber(const std::string& key, int requested);
    // Whether an object has a row.
    bool isCached(CMPIObjectPath* object);

    CMCIClient* cc;
    std::unique_ptr<DBConnection, ConnectionCloser> db;
};

} // namespace velmora_clp

#endif
