// What the parts of the check share while they run over one profile: the bytes, the header and
// directory as the file holds them, the loaded profile (when the loader accepts the file) and
// the findings so far. Internal to src/check.
#pragma once

#include "check/profile_check.h"
#include "profile/header.h"
#include "profile/profile.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

class CheckContext {
public:
    CheckContext(std::span<const std::uint8_t> bytes, icCheckReport& report);

    std::span<const std::uint8_t> bytes;
    icHeader header;
    // The tag count as stored, and the entries the file holds of it.
    std::uint32_t declaredCount = 0;
    std::vector<icTag> entries;
    // The profile as the window opens it; null when the loader refuses the file.
    std::unique_ptr<iccProfileRW> profile;

    bool isVersion4() const { return ::isVersion4(header); }
    // The first entry with that signature, -1 if none.
    int find(icSignature sig) const;
    // Whether the entry's data lies wholly inside the file.
    bool inFile(const icTag& entry) const {
        return std::uint64_t(entry.offset) + entry.size <= bytes.size();
    }
    // The entry's data when it lies in the file, else an empty span.
    std::span<const std::uint8_t> tagBytes(int index) const;

    // Whether a finding with this code is still listed: a garbage directory would otherwise
    // make thousands alike. Past the limit the finding is only counted; call it before
    // building the message of a finding that can repeat per entry or record.
    bool listing(std::string_view code);
    // One finding per code whose findings were only counted.
    void addUnlisted();

    void add(icSeverity severity, std::string_view code, std::optional<std::uint32_t> offset,
             std::string message);
    // A finding about directory entry `index`; the offset defaults to the entry's data.
    void addTag(icSeverity severity, std::string_view code, int index, std::string message,
                std::optional<std::uint32_t> offset = std::nullopt);
    // A finding about a tag that is not in the directory.
    void addMissing(icSeverity severity, std::string_view code, icSignature sig,
                    std::string message);

private:
    static constexpr int kListedPerCode = 20;
    icCheckReport& report_;
    std::map<std::string, int, std::less<>> listed_, unlisted_;
};

// The signature (or the last `bytes` bytes of the value) in single quotes, bytes outside
// printable ASCII as \xHH.
std::string quoted(icSignature sig, int bytes = 4);
// "%u" of a number, for messages.
std::string num(std::uint64_t value);

void checkHeader(CheckContext& context);
void checkProfileId(CheckContext& context, const icCheckOptions& options);
void checkLayout(CheckContext& context);
void checkContent(CheckContext& context);
