// The records that a walk of the verb show hands to the renderer: the tree of targets of the
// keyword and clpxml forms, and the selection record of the text form. They are plain structures;
// the functions behind them free what they own, unlinking each record before it is freed, so that
// a walk that is cut off at a checkpoint leaves lists that can still be freed.
#ifndef VELCLP_SHOWRECORDS_H
#define VELCLP_SHOWRECORDS_H

#include <CimClientLib/cmci.h>

#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace velmora_clp {

class CLPCommand;
struct TargetGroup;

// One shown object.
struct Target {
    CMPIObjectPath* object = nullptr;          // owned
    std::string ufip;                          // its address, in user form
    std::list<CMPIObjectPath*> associations;   // owned clones of the association instances
    std::list<TargetGroup*>* groups = nullptr; // owned; null when the target has none
};

// The targets of one class under one parent.
struct TargetGroup {
    std::string ufct;           // default class tag of the class
    std::string type;           // class type: "static", "dynamic" and so on
    bool deepest = false;       // the last level that is printed as instances
    std::list<Target*> targets; // owned
};

typedef Target _Target;
typedef TargetGroup _TargetGroup;

// One property to print.
struct PropValue {
    CMPIData* data = nullptr;      // owned copy of the value
    CMPIArray* values = nullptr;   // owned, the "Values" qualifier, or null
    CMPIArray* valuemap = nullptr; // owned, the "ValueMap" qualifier, or null
};

// What the tree form derives from the display options.
struct _show_filter {
    enum Flag {
        PROPERTIES = 1,
        ALL_PROPERTIES = 2, // not only those that the schema requires
        VERBS = 4,
        OEM_VERBS = 8,
        ASSOCIATIONS = 16,
        TARGETS = 32,
        OEM_TARGETS = 64
    };
    int flags = 0;
    std::vector<std::string> properties;   // names selected; empty selects all
    std::vector<std::string> targets;      // class tags selected
    std::vector<std::string> associations; // class tags of associations selected
};

// What the text form prints of the objects of one class. The destructor frees the properties
// and the instance; the class, the object, the reference and the command are borrowed.
struct FilterResult {
    FilterResult() = default;
    FilterResult(const FilterResult&) = delete;
    FilterResult& operator=(const FilterResult&) = delete;
    ~FilterResult();

    // Forgets what was read of one object, so that the next one is read afresh.
    void startObject(CMPIObjectPath* next);

    std::string ufct;
    bool display = false; // false: this object is not printed
    bool show_properties = false;
    std::map<std::string, PropValue*> properties; // a null value is fetched when it is printed
    std::map<std::string, PropValue*> pseudo_properties;
    bool show_associations = false;
    std::vector<std::string> association_classes; // an empty entry is skipped
    bool show_verbs = false;
    std::vector<std::string> verbs;
    bool show_targets = false;
    std::vector<std::string> target_ufcts; // an empty entry is skipped
    std::vector<std::string> dynamic_ufcts;
    bool association_only = false;           // the address names an association class
    std::string assoc_class;                 // class tag of that association
    CMPIConstClass* cim_class_def = nullptr; // read when first needed
    CMPIObjectPath* object = nullptr;
    CMPIInstance* instance = nullptr; // read when first needed
    std::string cim_class;
    std::string cim_namespace; // empty means the default namespace
    CLPCommand* command = nullptr;
    std::string reference_text; // address of the other end of an association, or empty
    CMPIObjectPath* reference = nullptr;
    std::string address;          // of the object, in user form; empty until it is printed
    std::string internal_address; // the same in internal form
};

// Each frees the record and all that it owns; null is allowed.
void freePropValue(PropValue* value);
void freeTarget(Target* target);
void freeTargetGroup(TargetGroup* group);

// Frees every group of the list and leaves it empty; the list itself stays the caller's.
void freeTargetGroups(std::list<TargetGroup*>& groups);

struct ShowRecordDeleter {
    void operator()(PropValue* value) const { freePropValue(value); }
    void operator()(Target* target) const { freeTarget(target); }
    void operator()(TargetGroup* group) const { freeTargetGroup(group); }
    void operator()(std::list<TargetGroup*>* groups) const;
};
using OwnedPropValue = std::unique_ptr<PropValue, ShowRecordDeleter>;
using OwnedTarget = std::unique_ptr<Target, ShowRecordDeleter>;
using OwnedTargetGroup = std::unique_ptr<TargetGroup, ShowRecordDeleter>;
using OwnedTargetGroups = std::unique_ptr<std::list<TargetGroup*>, ShowRecordDeleter>;

} // namespace velmora_clp

#endif
