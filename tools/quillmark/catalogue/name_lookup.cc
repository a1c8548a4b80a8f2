#include "catalogue/name_lookup.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <set>
#include <sstream>
#include <string_view>

#include "catalogue/kept_faces.h"
#include "library/library.h"
#include "platform/text/ascii_case.h"

namespace quillmark::tool {
namespace {

constexpr std::size_t kMostGuesses = 10;
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

std::vector<std::string> WordsOf(const std::string& name) {
  std::istringstream text(name);
  std::vector<std::string> words;
  for (std::string word; text >> word;) words.push_back(word);
  return words;
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

// With a capital letter, as styles are written, where a word of one case tells nothing as it is. Short words
// of capitals are abbreviations.
std::string AsStyleWord(const std::string& word) {
  constexpr std::size_t kLongestAbbreviation = 3;
  if (!StylesIn({word}).empty()) return word;
  std::string lower = word;
  std::string upper = word;
  for (char& c : lower) c = ToLowerAscii(c);
  for (char& c : upper) c = ToUpperAscii(c);
  if (word != lower && (word != upper || word.size() <= kLongestAbbreviation)) return word;
  return upper.substr(0, 1) + lower.substr(1);
}

// The words behind those of the family.
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
  return std::string("SELECT ") + kLabelPrefix + R"(, folders.path, name, size, label, position, key
FROM files JOIN folders ON folders.id = files.folder JOIN roots ON roots.id = folders.root WHERE files.id = ?)";
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

NameLookup::NameLookup(Database& database)
    : faces_(database),
      by_post_script_name_(database,
                           "SELECT file, face FROM faces WHERE post_script_name = ? COLLATE NOCASE"),
      by_full_name_(database, "SELECT file, face FROM faces WHERE full_name = ? COLLATE NOCASE"),
      by_windows_full_name_(database,
                            "SELECT file, face FROM faces WHERE windows_full_name = ? COLLATE NOCASE"),
      by_family_(database, "SELECT file, face FROM faces WHERE family = ? COLLATE NOCASE"),
      by_loose_name_(database, "SELECT file, face FROM faces WHERE loose_name = ?"),
      by_class_(database, "SELECT file, face FROM faces WHERE class = ?"),
      place_(database, PlaceQuery().c_str()) {}

std::vector<NameLookup::Key> NameLookup::KeysOf(Statement& query, const std::string& value) {
  return KeysIn(query.With(std::string_view(value)));
}

std::vector<NameLookup::Key> NameLookup::KeysIn(Statement& query) {
  std::vector<Key> keys;
  while (query.Step()) keys.emplace_back(query.Integer(0), query.Integer(1));
  query.Reset();
  std::sort(keys.begin(), keys.end());
  return keys;
}

std::vector<NameLookup::Found> NameLookup::FacesOf(const std::vector<Key>& keys) {
  std::vector<Found> found;
  Found of_file;                          // without its face
  std::optional<std::int64_t> file_read;  // whose place is known
  for (const auto& [file, face] : keys) {
    auto row = faces_.Read(file, face);
    if (!row) continue;
    if (file != file_read) {
      if (!place_.With(file).Step()) continue;
      of_file.face.path = place_.Text(0) + place_.Text(1) + place_.Text(2);
      of_file.data_fork_size = place_.Integer(3);
      of_file.place = {place_.Text(4), place_.Integer(5), place_.Text(6), place_.Text(2)};
      place_.Reset();
      file_read = file;
    }
    row->face.path = of_file.face.path;
    found.push_back({std::move(row->face), row->fond_id, of_file.data_fork_size, of_file.place});
  }
  std::stable_sort(found.begin(), found.end(),
                   [](const Found& a, const Found& b) { return a.place < b.place; });
  return found;
}

// The longest beginning of the name that is a family; the words behind it tell the style.
std::vector<NameLookup::Found> NameLookup::ByFamilyAndStyle(const std::string& name) {
  const std::vector<std::string> words = WordsOf(name);
  for (std::size_t family_words = std::min(words.size(), kMostWords); family_words > 0; --family_words) {
    const std::vector<Key> keys = KeysOf(by_family_, Joined(words, 0, family_words, " "));
    if (keys.empty()) continue;
    if (words.size() - family_words > kMostStyleWords) return {};
    const auto styles = StylesOfAll(StyleWords(words, family_words));
    if (!styles) return {};
    const std::vector<Found> family = FacesOf(keys);
    // The words of the family may tell styles, too, which then are among those of its faces.
    for (const StyleSet& wanted : {*styles, StylesOfName(words, family_words)}) {
      std::vector<Found> faces;
      std::copy_if(family.begin(), family.end(), std::back_inserter(faces),
                   [&](const Found& each) { return StylesThatCount(each.face.styles) == wanted; });
      if (!faces.empty()) return faces;
    }
    return {};
  }
  return {};
}

std::vector<NameLookup::Found> NameLookup::Near(const std::string& name) {
  const std::string loose = LooseName(name);
  const auto sum = SumOf(loose);
  if (!sum) return {};
  std::vector<Found> faces = FacesOf(KeysIn(by_loose_name_.With(*sum)));
  std::erase_if(faces, [&](const Found& each) { return LooseName(each.face.post_script_name) != loose; });
  return faces;
}

// As `same` tells data apart: by name and checksum, and by size where several sizes are known. Without a
// checksum data are not known to be the same as any other.
bool NameLookup::HaveOneDatum(const std::vector<Found>& faces) {
  const Face& first = faces.front().face;
  std::set<std::uint64_t> sizes;
  std::set<std::pair<std::string, std::uint32_t>> places;
  for (const Found& each : faces) {
    places.emplace(each.face.path, each.face.index);
    if (each.face.checksum != first.checksum || each.face.post_script_name != first.post_script_name)
      return false;
    const std::uint64_t size =
        CheckedBytes(each.face, each.fond_id, static_cast<std::uint64_t>(each.data_fork_size));
    if (size > 0) sizes.insert(size);
  }
  return sizes.size() <= 1 && (first.checksum != 0 || places.size() == 1);
}

FoundName NameLookup::Find(const std::string& name, bool wants_guesses) {
  FoundName answer;
  std::vector<Found> found;
  const auto look = [&](const char* rule, std::vector<Found> faces) {
    if (!found.empty() || faces.empty()) return;
    answer.rule = rule;
    found = std::move(faces);
  };
  look("postScriptName", FacesOf(KeysOf(by_post_script_name_, name)));
  if (found.empty()) look("fullName", FacesOf(KeysOf(by_full_name_, name)));
  if (found.empty()) look("windowsFullName", FacesOf(KeysOf(by_windows_full_name_, name)));
  if (found.empty()) look("familyAndStyle", ByFamilyAndStyle(name));
  if (!found.empty()) {
    std::set<std::string> files;  // links are one; those of other machines cannot be told
    for (const Found& each : found) {
      const bool is_here = std::get<0>(each.place).empty();
      files.insert(is_here ? FileIdentity(each.face.path) : each.face.path);
    }
    const bool is_one_file = files.size() == 1;
    answer.verdict = !HaveOneDatum(found) ? NameVerdict::kAmbiguous
                     : is_one_file        ? NameVerdict::kExact
                                          : NameVerdict::kCopies;
  } else {
    look("near", Near(name));
    if (!found.empty()) answer.verdict = NameVerdict::kNear;
  }
  for (Found& each : found) answer.faces.push_back(std::move(each.face));
  if (answer.verdict == NameVerdict::kMissing && wants_guesses) answer.guesses = Guesses(name);
  return answer;
}

std::vector<Face> NameLookup::Guesses(const std::string& name) {
  std::string spaced = name;
  std::replace(spaced.begin(), spaced.end(), '-', ' ');
  const std::vector<std::string> words = WordsOf(spaced);
  for (std::size_t family_words = std::min(words.size(), kMostWords); family_words > 0; --family_words) {
    const std::string classification = ClassOf(Joined(words, 0, family_words, " "), nullptr);
    if (classification.empty() || classification == "--") continue;
    if (words.size() - family_words > kMostStyleWords) return {};
    const StyleSet wanted = StylesOfName(words, family_words);
    std::string styles;
    for (const std::string& style : wanted) styles += style + '\n';
    const auto [known, is_new] = guesses_.try_emplace({classification, styles});
    if (is_new) {
      for (Found& each : FacesOf(KeysOf(by_class_, classification))) {
        if (known->second.size() == kMostGuesses) break;
        if (StylesThatCount(each.face.styles) == wanted) known->second.push_back(std::move(each.face));
      }
    }
    return known->second;
  }
  return {};
}

}  // namespace quillmark::tool
