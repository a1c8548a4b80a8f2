#include "catalogue/name_lookup.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <set>
#include <sstream>
#include <string_view>
#include <utility>

#include "catalogue/kept_faces.h"
#include "library/library.h"
#include "platform/text/ascii_case.h"

namespace quillmark::tool {
namespace {

constexpr std::size_t kMostGuesses = 10;
// Of families that are remembered: 8 MB.
constexpr std::size_t kMostKeysOfFamilies = 500'000;
// What a family takes besides, in keys.
constexpr std::size_t kKeysOfFamily = 32;
// A family of more words is not looked for, as each number of words costs a look.
constexpr std::size_t kMostWords = 64;
constexpr std::size_t kMostStyleWords = 16;  // behind a family
// The word that names the lack of any style.
constexpr const char* kNoStyle = "Regular";

using StyleSet = std::set<std::string>;

StyleSet StylesThatCount(const std::vector<std::string>& styles) {
  StyleSet counted(styles.begin(), styles.end());
  counted.erase(kNoStyle);
  return counted;
}

std::string Joined(const StyleSet& styles) {
  std::string joined;
  for (const std::string& style : styles) joined += style + '\n';
  return joined;
}

std::string InLowerCase(std::string name) {
  for (char& c : name) c = ToLowerAscii(c);
  return name;
}

std::vector<std::string> WordsOf(const std::string& name) {
  std::istringstream text(name);
  std::vector<std::string> words;
  for (std::string word; text >> word;) words.push_back(word);
  return words;
}

// The name up to the end of that many words, from the first on.
std::string BeginningOf(const std::string& name, const std::vector<std::string>& words, std::size_t count) {
  const std::size_t begin = name.find(words.front());
  std::size_t end = begin;
  for (std::size_t i = 0; i < count; ++i) end = name.find(words[i], end) + words[i].size();
  return name.substr(begin, end - begin);
}

std::string Joined(const std::vector<std::string>& words, std::size_t first, std::size_t end,
                   const char* between) {
  std::string joined;
  for (std::size_t i = first; i < end; ++i) joined += (i == first ? "" : between) + words[i];
  return joined;
}

// Words of styles behind a family, which are told as those of a face are: from a PostScript name and a full
// name.
std::vector<std::string> StylesIn(const std::vector<std::string>& words) {
  return StylesOf('-' + Joined(words, 0, words.size(), ""), Joined(words, 0, words.size(), " "));
}

// A word of one case with a capital letter, as styles are written. Short words of capitals are abbreviations.
std::string Capitalised(const std::string& word) {
  constexpr std::size_t kLongestAbbreviation = 3;
  std::string lower = word;
  std::string upper = word;
  for (char& c : lower) c = ToLowerAscii(c);
  for (char& c : upper) c = ToUpperAscii(c);
  if (word != lower && (word != upper || word.size() <= kLongestAbbreviation)) return word;
  return upper.substr(0, 1) + lower.substr(1);
}

// Where a word tells nothing as it is.
std::string AsStyleWord(const std::string& word) {
  return StylesIn({word}).empty() ? Capitalised(word) : word;
}

// The words behind those of the family, as styles are written.
std::vector<std::string> StyleWords(const std::vector<std::string>& words, std::size_t family_words) {
  std::vector<std::string> rest;
  for (std::size_t i = family_words; i < words.size(); ++i) rest.push_back(AsStyleWord(words[i]));
  return rest;
}

// The styles that words tell; nothing when one of them tells none, neither by itself nor with the others.
std::optional<StyleSet> StylesOfAll(const std::vector<std::string>& words) {
  const std::vector<std::string> styles = StylesIn(words);
  for (std::size_t i = 0; i < words.size(); ++i) {
    std::vector<std::string> others = words;
    others.erase(others.begin() + static_cast<std::ptrdiff_t>(i));
    if (StylesIn({words[i]}).empty() && StylesIn(others) == styles) return std::nullopt;
  }
  return StylesThatCount(styles);
}

// The styles of a family's words and of those behind them.
StyleSet StylesOfName(const std::vector<std::string>& words, std::size_t family_words) {
  const std::vector<std::string> rest = StyleWords(words, family_words);
  std::string post_script_name = Joined(words, 0, family_words, "");
  std::string full_name = Joined(words, 0, family_words, " ");
  if (!rest.empty()) {
    post_script_name += '-' + Joined(rest, 0, rest.size(), "");
    full_name += ' ' + Joined(rest, 0, rest.size(), " ");
  }
  return StylesThatCount(StylesOf(post_script_name, full_name));
}

std::string PlaceQuery() {
  return std::string("SELECT ") + kLabelPrefix + R"(, folders.path, name, size, label
FROM files JOIN folders ON folders.id = files.folder JOIN roots ON roots.id = folders.root WHERE files.id = ?)";
}

// Faces in the order of list. The condition chooses the index, and so the first table.
std::string FacesWhere(const char* condition) {
  return std::string("SELECT faces.file, face, styles, post_script_name FROM faces ") +
         "CROSS JOIN files ON files.id = faces.file CROSS JOIN folders ON folders.id = files.folder "
         "CROSS JOIN roots ON roots.id = folders.root WHERE " +
         condition + " ORDER BY label, position, key, name, face";
}

}  // namespace

const char* NameOf(NameVerdict verdict) {
  switch (verdict) {
    case NameVerdict::kExact:
      return "exact";
    case NameVerdict::kCopies:
      return "copies";
    case NameVerdict::kAmbiguous:
      return "ambiguous";
    case NameVerdict::kNear:
      return "near";
    case NameVerdict::kMissing:
      break;
  }
  return "missing";
}

// Whether faces that are told one after another are one datum: as `same` tells data apart, by name and
// checksum, and by size where several sizes are known. Without a checksum data are not known to be the same
// as any other. Links are one file; those of other machines cannot be told.
class NameLookup::Judgement {
 public:
  void Add(const Found& found) {
    const Face& face = found.face;
    const std::uint64_t size =
        CheckedBytes(face, found.fond_id, static_cast<std::uint64_t>(found.data_fork_size));
    if (!first_) {
      first_ = face;
      file_ = IdentityOf(found);
      size_ = size;
      return;
    }
    const bool is_elsewhere = face.path != first_->path;
    const bool is_other_place = is_elsewhere || face.index != first_->index;
    is_ambiguous_ |= face.checksum != first_->checksum || face.post_script_name != first_->post_script_name ||
                     (face.checksum == 0 && is_other_place) || (size > 0 && size_ > 0 && size != size_);
    if (size_ == 0) size_ = size;
    if (is_elsewhere && is_one_file_ && !is_ambiguous_) is_one_file_ = IdentityOf(found) == file_;
  }
  bool is_ambiguous() const { return is_ambiguous_; }
  NameVerdict verdict() const {
    if (is_ambiguous_) return NameVerdict::kAmbiguous;
    return is_one_file_ ? NameVerdict::kExact : NameVerdict::kCopies;
  }

 private:
  static std::string IdentityOf(const Found& found) {
    return found.is_here ? FileIdentity(found.face.path) : found.face.path;
  }

  std::optional<Face> first_;
  std::string file_;
  std::uint64_t size_ = 0;  // the first that is known
  bool is_ambiguous_ = false, is_one_file_ = true;
};

NameLookup::Search::Search(Database& database, const char* condition)
    : first_two(database,
                (std::string("SELECT file, face FROM faces WHERE ") + condition + " LIMIT 2").c_str()),
      in_order(database, FacesWhere(condition).c_str()) {}

NameLookup::NameLookup(Database& database)
    : faces_(database),
      by_post_script_name_(database, "post_script_name = ? COLLATE NOCASE"),
      by_full_name_(database, "full_name = ? COLLATE NOCASE"),
      by_windows_full_name_(database, "windows_full_name = ? COLLATE NOCASE"),
      commit_(database, "PRAGMA data_version"),
      by_family_(database, FacesWhere("family = ? COLLATE NOCASE").c_str()),
      by_loose_name_(database, FacesWhere("loose_name = ?").c_str()),
      by_class_(database, FacesWhere("class = ?").c_str()),
      place_(database, PlaceQuery().c_str()) {}

// What was remembered may be of the commit before an update.
void NameLookup::ForgetOldCommit() {
  commit_.Reset();
  const std::int64_t commit = commit_.Step() ? commit_.Integer(0) : 0;
  commit_.Reset();
  if (std::exchange(commit_seen_, commit) == commit) return;
  families_.clear();
  keys_of_families_ = 0;
  classes_.clear();
}

NameLookup::Keys NameLookup::KeysIn(Statement& query) {
  Keys keys;
  while (query.Step()) keys.emplace_back(query.Integer(0), query.Integer(1));
  query.Reset();
  return keys;
}

NameLookup::Keys NameLookup::KeysOf(Search& search, const std::string& value) {
  Keys keys = KeysIn(search.first_two.With(std::string_view(value)));
  return keys.size() < 2 ? keys : KeysIn(search.in_order.With(std::string_view(value)));
}

// At most so many of each set of styles.
NameLookup::KeysByStyles NameLookup::ByStyles(Statement& query, const std::string& value, std::size_t most) {
  KeysByStyles keys;
  std::map<std::string, Keys*> by_text;  // as stored
  query.With(std::string_view(value));
  while (query.Step()) {
    const auto [found, is_new] = by_text.try_emplace(query.Text(2));
    if (is_new) found->second = &keys[Joined(StylesThatCount(StoredStyles(found->first)))];
    if (found->second->size() < most) found->second->emplace_back(query.Integer(0), query.Integer(1));
  }
  query.Reset();
  return keys;
}

const NameLookup::KeysByStyles* NameLookup::FamilyOf(const std::string& name) {
  const std::string lower = InLowerCase(name);
  const auto known = families_.find(lower);
  if (known != families_.end()) return &known->second;
  KeysByStyles family = ByStyles(by_family_, name, SIZE_MAX);
  if (family.empty()) return nullptr;
  if (keys_of_families_ > kMostKeysOfFamilies) {
    families_.clear();
    keys_of_families_ = 0;
  }
  keys_of_families_ += kKeysOfFamily;
  for (const auto& [styles, keys] : family) keys_of_families_ += keys.size();
  return &(families_[lower] = std::move(family));
}

std::optional<NameLookup::Found> NameLookup::FoundAt(const FaceKey& key) {
  auto row = faces_.Read(key.first, key.second);
  if (!row || !place_.With(key.first).Step()) return std::nullopt;
  Found found{std::move(row->face), row->fond_id, place_.Integer(3), place_.Text(4).empty()};
  found.face.path = place_.Text(0) + place_.Text(1) + place_.Text(2);
  place_.Reset();
  return found;
}

// The longest beginning of the name that is a family; the words behind it tell the style.
NameLookup::Keys NameLookup::ByFamilyAndStyle(const std::string& name) {
  const std::vector<std::string> words = WordsOf(name);
  for (std::size_t family_words = std::min(words.size(), kMostWords); family_words > 0; --family_words) {
    const KeysByStyles* family = FamilyOf(Joined(words, 0, family_words, " "));
    if (family == nullptr) family = FamilyOf(BeginningOf(name, words, family_words));
    if (family == nullptr) continue;
    if (words.size() - family_words > kMostStyleWords) return {};
    const auto styles = StylesOfAll(StyleWords(words, family_words));
    if (!styles) return {};
    // The words of the family may tell styles, too, which then are among those of its faces.
    std::vector<std::string> capitalised = words;
    for (std::string& word : capitalised) word = Capitalised(word);
    for (const StyleSet& wanted :
         {*styles, StylesOfName(words, family_words), StylesOfName(capitalised, family_words)}) {
      const auto keys = family->find(Joined(wanted));
      if (keys != family->end()) return keys->second;
    }
    return {};
  }
  return {};
}

NameLookup::Keys NameLookup::Near(const std::string& name) {
  const std::string loose = LooseName(name);
  const auto sum = SumOf(loose);
  Keys keys;
  if (!sum) return keys;
  by_loose_name_.With(*sum);
  while (by_loose_name_.Step()) {
    if (LooseName(by_loose_name_.Text(3)) == loose)
      keys.emplace_back(by_loose_name_.Integer(0), by_loose_name_.Integer(1));
  }
  by_loose_name_.Reset();
  return keys;
}

// Looks at all faces, or as far as the verdict is open, and holds the first.
void NameLookup::Judge(const Keys& keys, FoundName& answer) {
  Judgement judgement;
  for (const FaceKey& key : keys) {
    const bool is_held = answer.faces.size() < FoundName::kMostHeld;
    if (!is_held) answer.more.push_back(key);
    if (!is_held && judgement.is_ambiguous()) continue;
    auto found = FoundAt(key);
    if (!found) continue;
    judgement.Add(*found);
    if (is_held) answer.faces.push_back(std::move(found->face));
  }
  if (!answer.faces.empty()) answer.verdict = judgement.verdict();
}

FoundName NameLookup::Find(const std::string& name, bool wants_guesses) {
  ForgetOldCommit();
  FoundName answer;
  Keys keys;
  const auto look = [&](const char* rule, Keys found) {
    if (found.empty()) return false;
    answer.rule = rule;
    keys = std::move(found);
    return true;
  };
  const bool is_by_name = look("postScriptName", KeysOf(by_post_script_name_, name)) ||
                          look("fullName", KeysOf(by_full_name_, name)) ||
                          look("windowsFullName", KeysOf(by_windows_full_name_, name)) ||
                          look("familyAndStyle", ByFamilyAndStyle(name));
  if (!is_by_name) look("near", Near(name));
  Judge(keys, answer);
  if (answer.faces.empty()) {
    answer.rule = nullptr;  // also where the catalogue is damaged and its parts disagree
  } else if (!is_by_name) {
    answer.verdict = NameVerdict::kNear;
  }
  if (answer.verdict == NameVerdict::kMissing && wants_guesses) answer.guesses = Guesses(name);
  return answer;
}

void NameLookup::TellMore(const FoundName& found, const std::function<void(const Face&)>& tell) {
  for (const FaceKey& key : found.more) {
    if (const auto face = FoundAt(key)) tell(face->face);
  }
}

std::vector<Face> NameLookup::Guesses(const std::string& name) {
  std::string spaced = name;
  std::replace(spaced.begin(), spaced.end(), '-', ' ');
  const std::vector<std::string> words = WordsOf(spaced);
  for (std::size_t family_words = std::min(words.size(), kMostWords); family_words > 0; --family_words) {
    const std::string classification = ClassOf(Joined(words, 0, family_words, " "), nullptr);
    if (classification.empty() || classification == "--") continue;
    if (words.size() - family_words > kMostStyleWords) return {};
    const auto [known, is_new] = classes_.try_emplace(classification);
    if (is_new) known->second = ByStyles(by_class_, classification, kMostGuesses);
    std::vector<Face> guesses;
    const auto keys = known->second.find(Joined(StylesOfName(words, family_words)));
    if (keys == known->second.end()) return guesses;
    for (const FaceKey& key : keys->second) {
      if (auto found = FoundAt(key)) guesses.push_back(std::move(found->face));
    }
    return guesses;
  }
  return {};
}

}  // namespace quillmark::tool
