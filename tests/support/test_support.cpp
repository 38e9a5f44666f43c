#include "support/test_support.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

std::vector<fs::path> installedProfiles() {
    std::vector<fs::path> found;
    std::error_code ec;
    for (auto it = fs::recursive_directory_iterator("/usr/share/color", ec);
         it != fs::recursive_directory_iterator(); it.increment(ec)) {
        std::string ext = it->path().extension().string();
        for (char& c : ext)
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        if (!ec && it->is_regular_file() && (ext == ".icc" || ext == ".icm"))
            found.push_back(it->path());
    }
    std::sort(found.begin(), found.end());
    return found;
}

fs::path scratchDir() {
    const char* base = std::getenv("VELTRINO_TMP");
    fs::path dir = base ? fs::path(base) : fs::temp_directory_path() / "veltrino-tests";
    dir /= std::to_string(::getpid());
    fs::create_directories(dir);
    return dir;
}

Bytes readBytes(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(in), {});
}

std::string writeBytes(const fs::path& path, const Bytes& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
    return path.string();
}

std::string readText(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::string writeText(const fs::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
    return path.string();
}

Bytes tagBytes(icSignature type, const Bytes& payload) {
    Bytes bytes;
    iccWriter w(bytes);
    w.sig(type);
    w.u32(0);
    w.bytes(payload);
    return bytes;
}

Bytes textTag(const std::string& text) {
    return tagBytes(icSig("text"), Bytes(text.c_str(), text.c_str() + text.size() + 1));
}

ProfileBuilder::ProfileBuilder() : header(defaultHeader()) {
    header.deviceClass = icSig("mntr");
    header.colorSpace = icSig("RGB ");
    header.pcs = icSig("XYZ ");
    header.date = {2020, 5, 17, 8, 30, 5};
}

ProfileBuilder& ProfileBuilder::tag(icSignature sig, Bytes bytes) {
    items_.push_back({sig, std::move(bytes), false, 0, 0});
    return *this;
}

ProfileBuilder& ProfileBuilder::entry(icSignature sig, std::uint32_t offset, std::uint32_t size) {
    items_.push_back({sig, {}, true, offset, size});
    return *this;
}

Bytes ProfileBuilder::build(bool keepSize) const {
    // Everything after the header first: its size goes into the header.
    Bytes body;
    iccWriter w(body);
    w.u32(static_cast<std::uint32_t>(items_.size()));
    std::uint32_t next = static_cast<std::uint32_t>(kHeaderSize + 4 + 12 * items_.size());
    std::vector<std::uint32_t> offsets;
    for (const Item& item : items_) {
        offsets.push_back(item.explicitPlace ? item.offset : next);
        if (!item.explicitPlace)
            next += static_cast<std::uint32_t>(roundUp4(item.bytes.size()));
        w.sig(item.sig);
        w.u32(offsets.back());
        w.u32(item.explicitPlace ? item.size : static_cast<std::uint32_t>(item.bytes.size()));
    }
    for (const Item& item : items_) {
        if (item.explicitPlace)
            continue;
        w.bytes(item.bytes);
        w.pad4();
    }
    icHeader h = header;
    if (!keepSize)
        h.size = static_cast<std::uint32_t>(kHeaderSize + body.size());
    const auto headerBytes = headerToBytes(h);
    Bytes out;
    out.reserve(kHeaderSize + body.size());
    out.insert(out.end(), headerBytes.begin(), headerBytes.end());
    out.insert(out.end(), body.begin(), body.end());
    return out;
}

namespace {

std::string shellQuote(const std::string& s) {
    std::string quoted = "'";
    for (char c : s)
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

} // namespace

CliResult runCli(const std::vector<std::string>& args) {
    static int counter = 0;
    const fs::path dir = scratchDir();
    const fs::path out = dir / ("cli-out-" + std::to_string(counter));
    const fs::path err = dir / ("cli-err-" + std::to_string(counter++));
    std::string command = shellQuote(VELTRINO_CLI_PATH);
    for (const std::string& arg : args)
        command += " " + shellQuote(arg);
    command += " >" + shellQuote(out.string()) + " 2>" + shellQuote(err.string()) + " </dev/null";
    const int status = std::system(command.c_str());
    CliResult result;
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.out = readText(out);
    result.err = readText(err);
    return result;
}

std::string makeImage(const std::string& name, const std::string& profile,
                      const std::string& options) {
    const std::string path = (scratchDir() / name).string();
    std::string command = "convert -size 8x8 xc:red " + options;
    if (!profile.empty())
        command += " -profile " + shellQuote(profile);
    command += " " + shellQuote(path) + " </dev/null";
    return std::system(command.c_str()) == 0 ? path : std::string();
}
