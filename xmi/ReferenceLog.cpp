#include "xmi/ReferenceLog.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace nuv::zero::xmi {
namespace {

constexpr std::size_t blockSize = std::size_t{1} << 16U;
/// So that every index fits, with room for the mark beside it.
constexpr std::size_t mostDigits = 9;

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}
bool isBlank(char character) {
    return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

/// Whether the text is a number that is written in one way only.
bool isIndex(std::string_view text) {
    const bool isPlain =
        !text.empty() && text.size() <= mostDigits && (text.front() != '0' || text.size() == 1);
    return isPlain && std::all_of(text.begin(), text.end(), isDigit);
}

std::uint32_t indexOf(std::string_view text) {
    std::uint32_t index = 0;
    for (const char digit : text) index = 10 * index + static_cast<std::uint32_t>(digit - '0');
    return index;
}

/// Small numbers for small differences in both directions, and back.
std::uint32_t zigzag(std::uint32_t difference) {
    const bool isNegative = difference >> 31U != 0;
    return isNegative ? ~(difference << 1U) : difference << 1U;
}
std::uint32_t unzigzag(std::uint32_t number) {
    return number % 2 != 0 ? ~(number >> 1U) : number >> 1U;
}

std::size_t sharedBytes(std::string_view one, std::string_view other) {
    const std::size_t most = std::min(one.size(), other.size());
    std::size_t same = 0;
    for (std::uint64_t a = 0, b = 0; same + sizeof a <= most; same += sizeof a) {
        std::memcpy(&a, one.data() + same, sizeof a);
        std::memcpy(&b, other.data() + same, sizeof b);
        if (a != b) break;
    }
    while (same < most && one[same] == other[same]) ++same;
    return same;
}

}  // namespace

void ReferenceLog::addOne(const Place& place, std::string_view text) {
    begin(place, Form::One);
    putNumber(text.size());
    record_.append(text);
    flush(place);
}

void ReferenceLog::addList(const Place& place, std::string_view text) {
    begin(place, Form::Paths);
    if (!putPaths(text)) {
        // What the paths in front were compared with is not in the log.
        previous_.clear();
        stepEnds_.clear();
        begin(place, Form::List);
        putNumber(text.size());
        record_.append(text);
    }
    flush(place);
}

void ReferenceLog::begin(const Place& place, Form form) {
    record_.clear();
    // By how much they differ from the place before; numbers wrap around.
    putNumber(place.node - before_.node);
    putNumber(zigzag(place.element - before_.element));
    putNumber(place.feature * std::uint64_t{3} + static_cast<std::uint64_t>(form));
}

void ReferenceLog::putNumber(std::uint64_t number) {
    for (; number >= 0x80U; number >>= 7U) {
        record_ += static_cast<char>((number & 0x7FU) | 0x80U);
    }
    record_ += static_cast<char>(number);
}

bool ReferenceLog::putPaths(std::string_view text) {
    while (true) {
        while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
        if (text.empty()) break;
        if (!putPath(text)) return false;
    }
    // No path shares more steps than there are, so this cannot be taken for one.
    putNumber(std::numeric_limits<std::uint32_t>::max());
    return true;
}

bool ReferenceLog::putPath(std::string_view& text) {
    const std::size_t same = sharedBytes(previous_, text);
    // A step is shared when it ends in both.
    const auto isEnd = [&](std::size_t at) {
        return at == text.size() || text[at] == '/' || isBlank(text[at]);
    };
    std::size_t shared = static_cast<std::size_t>(
        std::upper_bound(stepEnds_.begin(), stepEnds_.end(), same) - stepEnds_.begin());
    if (shared != 0 && !isEnd(stepEnds_[shared - 1])) --shared;
    putNumber(shared);
    stepEnds_.resize(shared);

    std::size_t at = shared == 0 ? 0 : stepEnds_.back();
    if (shared == 0) {
        if (text.front() != '/') return false;
        for (at = 1; !isEnd(at);) ++at;
        const std::string_view root = text.substr(1, at - 1);
        if (!root.empty() && !isIndex(root)) return false;
        putNumber(root.empty() ? 0 : std::uint64_t{1} + indexOf(root));
        stepEnds_.push_back(at);
    }
    while (at < text.size() && text[at] == '/') {
        const std::size_t begin = ++at;
        while (!isEnd(at)) ++at;
        if (!putStep(text.substr(begin, at - begin))) return false;
        stepEnds_.push_back(at);
    }
    putNumber(0);
    previous_.assign(text.substr(0, at));
    text.remove_prefix(at);
    return true;
}

bool ReferenceLog::putStep(std::string_view step) {
    // What could be something else than a feature, or is written in several ways, stays a text.
    if (step.size() < 2 || step.front() != '@') return false;
    step.remove_prefix(1);
    std::size_t digits = 0;
    while (digits < step.size() && isDigit(step[step.size() - 1 - digits])) ++digits;
    std::string_view index;
    const bool isNumber =
        digits != 0 && digits < step.size() && step[step.size() - 1 - digits] == '.';
    if (isNumber) {
        index = step.substr(step.size() - digits);
        if (!isIndex(index)) return false;
        step.remove_suffix(digits + 1);
    }
    if (step.empty()) return false;
    const FragmentIndex::Tag known = tagOf(step);
    if (known == TextTable::none) return false;
    // The tag is marked by the lowest bit where an index follows, and no tag is 0.
    const std::uint64_t tag = known + std::uint64_t{1};
    putNumber(2 * tag + (index.empty() ? 0 : 1));
    if (!index.empty()) putNumber(indexOf(index));
    return true;
}

FragmentIndex::Tag ReferenceLog::tagOf(std::string_view feature) {
    const auto mix = static_cast<unsigned char>(feature.front()) * 7U +
                     static_cast<unsigned char>(feature.back()) + feature.size();
    Known& known = known_[mix % known_.size()];
    if (known.tag != TextTable::none && index_.textOf(known.tag) == feature) return known.tag;
    if (feature.find_first_of("%#:[") != std::string_view::npos) return TextTable::none;
    return known.tag = index_.tagNamed(feature);
}

void ReferenceLog::flush(const Place& place) {
    if (blocks_.empty() || blocks_.back().capacity - blocks_.back().used < record_.size()) {
        const std::size_t capacity = std::max(blockSize, record_.size());
        blocks_.push_back({std::unique_ptr<char[]>(new char[capacity]), 0, capacity});
    }
    Block& block = blocks_.back();
    std::memcpy(block.bytes.get() + block.used, record_.data(), record_.size());
    block.used += record_.size();
    before_ = place;
}

bool ReferenceLog::Reader::next() {
    while (block_ < log_.blocks_.size() && at_ == log_.blocks_[block_].used) {
        ++block_;
        at_ = 0;
    }
    if (block_ == log_.blocks_.size()) return false;
    place_.node += static_cast<Node>(number());
    place_.element += unzigzag(static_cast<std::uint32_t>(number()));
    const std::uint64_t featureAndForm = number();
    place_.feature = static_cast<std::uint32_t>(featureAndForm / 3);
    form_ = static_cast<Form>(featureAndForm % 3);
    if (!isPaths()) {
        const auto size = static_cast<std::size_t>(number());
        text_ = {log_.blocks_[block_].bytes.get() + at_, size};
        at_ += size;
    }
    return true;
}

bool ReferenceLog::Reader::nextPath() {
    const std::uint64_t shared = number();
    if (shared == std::numeric_limits<std::uint32_t>::max()) return false;
    shared_ = static_cast<std::size_t>(shared);
    if (shared_ == 0) root_ = number();
    steps_.resize(sharedSteps());
    while (const std::uint64_t tag = number()) {
        const bool hasIndex = tag % 2 != 0;
        const auto index = hasIndex ? static_cast<std::uint32_t>(number()) : 0;
        steps_.push_back({static_cast<FragmentIndex::Tag>(tag / 2 - 1), index, hasIndex});
    }
    return true;
}

std::string ReferenceLog::Reader::pathText() const {
    std::string text = "/";
    if (root_ != 0) text += std::to_string(root_ - 1);
    for (const LoggedStep& step : steps_) {
        text.append("/@").append(log_.index_.textOf(step.tag));
        if (step.hasIndex) text += '.' + std::to_string(step.index);
    }
    return text;
}

std::uint64_t ReferenceLog::Reader::number() noexcept {
    const char* const bytes = log_.blocks_[block_].bytes.get();
    std::uint64_t result = 0;
    for (unsigned shift = 0;; shift += 7) {
        const auto byte = static_cast<unsigned char>(bytes[at_++]);
        result |= static_cast<std::uint64_t>(byte & 0x7FU) << shift;
        if (byte < 0x80U) return result;
    }
}

}  // namespace nuv::zero::xmi
