#pragma once
// Handles on reference-counted records, kept in one list per kind.

#include <vector>

#include "diag/CMemMan.h"
#include "diag/CallStack.h"
#include "diag/LogFile.h"

// The start of every record.
struct ResType {
    int referenceCount = 1;
};

// The base of a handle. Counts and lists have no lock of their own: kinds used from several threads hold the graphics
// lock. A kind's destructor calls SRFree before this base goes.
template <typename RecordType>
class SharedResource {
  public:
    using RecordList = std::vector<RecordType*>;

    virtual ~SharedResource() {
        if (shared)
            ReportWithStack(
                "Warning: Base (SharedResource) being destructed, but resource still allocated.  Did child not call SRFree in destructor?\n");
    }
    SharedResource(const SharedResource&) = delete;
    SharedResource& operator=(const SharedResource&) = delete;

    [[nodiscard]] RecordType* Record() const { return shared; }
    // All live records of the kind, in creation order.
    static RecordList& Records() {
        // Never destroyed: handles with static lifetime may go later than any list with one.
        static RecordList* records = new RecordList;
        return *records;
    }
    // The first record for which `matches` answers true, or null.
    template <typename Matches>
    static RecordType* FindRecord(Matches matches) {
        for (RecordType* candidate : Records())
            if (matches(*candidate)) return candidate;
        return nullptr;
    }

    void SRFree();

  protected:
    SharedResource() = default;
    // Frees the current record and makes a new one, counted once.
    RecordType& AllocateRecord();
    void CopyFrom(const SharedResource& other) { ShareRecord(other.shared); }
    // Frees the current record and takes a reference to another (or none).
    void ShareRecord(RecordType* other);

  private:
    // Frees the platform objects of the record, which is about to go.
    virtual void ReleaseApi() = 0;

    RecordType* shared = nullptr;
};

template <typename RecordType>
RecordType& SharedResource<RecordType>::AllocateRecord() {
    SRFree();
    shared = new2<RecordType>({"ResType", "ResType", "SharedResource_TCPP", __LINE__});
    Records().push_back(shared);
    return *shared;
}

template <typename RecordType>
void SharedResource<RecordType>::ShareRecord(RecordType* other) {
    if (other == shared) return;
    SRFree();
    shared = other;
    if (shared) ++shared->referenceCount;
}

template <typename RecordType>
void SharedResource<RecordType>::SRFree() {
    if (!shared) return;
    if (--shared->referenceCount > 0) {
        shared = nullptr;
        return;
    }
    RecordList& records = Records();
    bool found = false;
    for (auto place = records.begin(); place != records.end(); ++place)
        if (*place == shared) {
            records.erase(place);
            found = true;
            break;
        }
    if (!found) ReportWithStack("Internal error in SharedResource, SRFree()...");
    ReleaseApi();
    delete2(shared, "SharedResource_TCPP", __LINE__);
    shared = nullptr;
}
