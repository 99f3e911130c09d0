// LoadRecord.h: what the loaders read, kept for the load report. The service owns one
// recorder and hands it to the collections it builds; the loaders fill one record per
// file they are asked for. Only loading writes here, so look-ups pay nothing for it.
#pragma once

#include "base/Settings.h"

#include <framework/LoadReport.h>

#include <mutex>
#include <vector>

namespace Framework::Internal {

using FileRecord = LoadReport::FileRecord;

class LoadRecorder {
public:
    // Keeps the settings the service is built from, to tell later changes from them.
    explicit LoadRecorder(const Settings& atConstruction) : settings(atConstruction) {}

    // May run while a report is taken: the lazy load records from a look-up's thread.
    void Add(FileRecord record) {
        std::lock_guard<std::mutex> guard(lock);
        if (record.file == LoadReport::File::FullStrings)
            fullStringsRead = true;
        records.push_back(std::move(record));
    }

    void CopyInto(LoadReport& report) const {
        std::lock_guard<std::mutex> guard(lock);
        report.files = records;
        report.fullStringsRead = fullStringsRead;
    }

    const Settings& SettingsAtConstruction() const { return settings; }

private:
    const Settings settings;
    mutable std::mutex lock; // guards records and fullStringsRead
    std::vector<FileRecord> records;
    bool fullStringsRead = false;
};

} // namespace Framework::Internal
