#include "profile/header.h"

#include <cmath>
#include <cstdio>
#include <ctime>
#include <memory>

icHeader headerFromBytes(std::span<const std::uint8_t> bytes) {
    iccReader r(bytes.first(kHeaderSize));
    icHeader h;
    h.size = r.u32();
    h.cmmId = r.sig();
    h.version = r.u32();
    h.deviceClass = r.sig();
    h.colorSpace = r.sig();
    h.pcs = r.sig();
    h.date.year = r.u16();
    h.date.month = r.u16();
    h.date.day = r.u16();
    h.date.hours = r.u16();
    h.date.minutes = r.u16();
    h.date.seconds = r.u16();
    h.magic = r.sig();
    h.platform = r.sig();
    h.flags = r.u32();
    h.manufacturer = r.sig();
    h.model = r.u32();
    h.attributes[0] = r.u32();
    h.attributes[1] = r.u32();
    h.renderingIntent = r.u32();
    h.illuminant.X = static_cast<std::int32_t>(r.u32());
    h.illuminant.Y = static_cast<std::int32_t>(r.u32());
    h.illuminant.Z = static_cast<std::int32_t>(r.u32());
    h.creator = r.sig();
    const auto id = r.bytes(16);
    std::copy(id.begin(), id.end(), h.profileID.begin());
    const auto reserved = r.bytes(28);
    std::copy(reserved.begin(), reserved.end(), h.reserved.begin());
    return h;
}

std::array<std::uint8_t, kHeaderSize> headerToBytes(const icHeader& h) {
    std::vector<std::uint8_t> out;
    out.reserve(kHeaderSize);
    iccWriter w(out);
    w.u32(h.size);
    w.sig(h.cmmId);
    w.u32(h.version);
    w.sig(h.deviceClass);
    w.sig(h.colorSpace);
    w.sig(h.pcs);
    w.u16(h.date.year);
    w.u16(h.date.month);
    w.u16(h.date.day);
    w.u16(h.date.hours);
    w.u16(h.date.minutes);
    w.u16(h.date.seconds);
    w.sig(h.magic);
    w.sig(h.platform);
    w.u32(h.flags);
    w.sig(h.manufacturer);
    w.u32(h.model);
    w.u32(h.attributes[0]);
    w.u32(h.attributes[1]);
    w.u32(h.renderingIntent);
    w.u32(static_cast<std::uint32_t>(h.illuminant.X));
    w.u32(static_cast<std::uint32_t>(h.illuminant.Y));
    w.u32(static_cast<std::uint32_t>(h.illuminant.Z));
    w.sig(h.creator);
    w.bytes(h.profileID);
    w.bytes(h.reserved);
    std::array<std::uint8_t, kHeaderSize> bytes{};
    std::copy(out.begin(), out.end(), bytes.begin());
    return bytes;
}

icDateTimeNumber currentLocalDate() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
#ifdef _WIN32
    localtime_s(&local, &now);
#else
    localtime_r(&now, &local);
#endif
    icDateTimeNumber d;
    d.year = static_cast<std::uint16_t>(local.tm_year + 1900);
    d.month = static_cast<std::uint16_t>(local.tm_mon + 1);
    d.day = static_cast<std::uint16_t>(local.tm_mday);
    d.hours = static_cast<std::uint16_t>(local.tm_hour);
    d.minutes = static_cast<std::uint16_t>(local.tm_min);
    d.seconds = static_cast<std::uint16_t>(local.tm_sec);
    return d;
}

void stampCurrentDate(icHeader& header) {
    header.date = currentLocalDate();
}

icHeader defaultHeader() {
    icHeader h;
    h.size = kHeaderSize;
    h.cmmId = icSig("Lino");
    h.version = 0x02400000;
    h.deviceClass = 0xFFFFFFFF;
    h.colorSpace = 0xFFFFFFFF;
    h.pcs = icSig("Lab ");
    stampCurrentDate(h);
    h.magic = kMagic;
    h.platform = icSig("MSFT");
    h.illuminant = {doubleToS15Fixed16(0.9642), doubleToS15Fixed16(1.0),
                    doubleToS15Fixed16(0.8249)};
    h.creator = icSig("Tint");
    return h;
}

icStatus validateHeader(const icHeader& header, std::int64_t fileLength) {
    if (header.magic != kMagic)
        return icErrBadProfile;
    if (fileLength >= 0 && static_cast<std::uint64_t>(fileLength) != header.size)
        return icWarnHeader;
    // Strictly greater: a deviation of exactly 0.005 passes.
    const double x = s15Fixed16ToDouble(header.illuminant.X);
    const double y = s15Fixed16ToDouble(header.illuminant.Y);
    const double z = s15Fixed16ToDouble(header.illuminant.Z);
    if (std::fabs(x - 0.9642) > 0.005 || std::fabs(y - 1.0) > 0.005 ||
        std::fabs(z - 0.8249) > 0.005)
        return icWarnHeader;
    return icOk;
}

icStatus readHeaderFromFile(const std::string& path, icHeader& header) {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                         &std::fclose);
    if (!file)
        return icErrFile;
    std::array<std::uint8_t, kHeaderSize> bytes{};
    if (std::fseek(file.get(), 0, SEEK_SET) != 0 ||
        std::fread(bytes.data(), 1, bytes.size(), file.get()) != bytes.size())
        return icErrFile;
    header = headerFromBytes(bytes);
    if (std::fseek(file.get(), 0, SEEK_END) != 0 || std::ftell(file.get()) < 0)
        return icErrFile;
    return header.magic == kMagic ? icOk : icErrBadProfile;
}
