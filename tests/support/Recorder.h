// Recorder.h - a crash recorder that a test installs and asks what it was told.
#ifndef TV_TEST_RECORDER_H
#define TV_TEST_RECORDER_H

#include "TvErrorStatus.h"
#include "TvHooks.h"

#include <string>
#include <vector>

/// Installed for its own life time; what was installed before comes back after it.
class Recorder : public CrashRecorder {
public:
    struct Fault {
        bool isStatus;            ///< a TvErrorStatus, else a text
        Orna::ErrorStatus status; ///< eOk for a text
        std::wstring message;     ///< description() of a text
        std::wstring file;
        int line;
    };

    Recorder() : m_before(ornaGetCrashRecorder()) { ornaSetCrashRecorder(this); }
    ~Recorder() override { ornaSetCrashRecorder(m_before); }
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    void record(TvException* fault) override
    {
        const auto* const status = dynamic_cast<const TvErrorStatus*>(fault);
        m_faults.push_back({status != nullptr, status != nullptr ? status->errorType() : Orna::eOk,
                            status != nullptr ? L"" : fault->description(), fault->file, fault->line});
    }

    const std::vector<Fault>& faults() const { return m_faults; }

    /// The texts, in order.
    std::vector<std::wstring> messages() const
    {
        std::vector<std::wstring> result;
        for (const Fault& fault : m_faults)
            if (!fault.isStatus)
                result.push_back(fault.message);
        return result;
    }

    /// The statuses, in order.
    std::vector<Orna::ErrorStatus> statuses() const
    {
        std::vector<Orna::ErrorStatus> result;
        for (const Fault& fault : m_faults)
            if (fault.isStatus)
                result.push_back(fault.status);
        return result;
    }

private:
    CrashRecorder* m_before;
    std::vector<Fault> m_faults;
};

#endif
