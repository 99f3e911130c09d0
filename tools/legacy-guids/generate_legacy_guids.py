#!/usr/bin/env python3
# generate_legacy_guids.py: writes data/legacy_guids.tsv, the rows of the compiled-in table
# that maps legacy (component, integer id) pairs to the GUID keys of the current strings.
#
# Run from the repository root (Python 3.8 or newer, no packages needed):
#     python3 tools/legacy-guids/generate_legacy_guids.py [output]
# The output defaults to data/legacy_guids.tsv. The seed is fixed, so every run writes the
# same bytes; the script checks every property of the table before writing and refuses to
# write a table that misses one.
#
# Format: one row a line in table order, "id<TAB>component<TAB>guid", the guid field empty
# for rows without a key, no header, LF endings.
#
# How texts are counted: two texts are the same text only when they are equal byte for
# byte (no case folding). So the 17 rows with upper-case hex digits each hold a text of
# their own (some are upper-case twins of lower-case texts elsewhere, which still count
# separately), and the one slash-separated key is one more distinct, unshared text.

import random
import sys
from collections import Counter, defaultdict
from pathlib import Path

SEED = 0x51A7E
ROWS = 15935
EMPTY_ROWS = 976
DISTINCT_TEXTS = 11652
SHARED_TEXTS = 1686
UPPER_ROWS = 17
UPPER_TWINS = 5  # upper-case rows whose lower-case form is held by another row
SAME_TEXT_DUPLICATES = 88
MAX_ID = 65280
SLASH_KEY = "Lumen/Panels/Layers/Caption"

PREFERRED_SIZES = {
    "Nimbus": 5348,
    "Lumen": 2410,
    "Schema": 1870,
    "NimbusIntl": 1650,
    "BrtWash": 980,
}

# Invented names of in-house components; none is the name of a product or vendor.
INVENTED = [
    "Qj", "Zethrin", "Morvask", "Thrandle", "Ulvecote", "Brisselk", "Carnoquil",
    "Dwemmerly", "Eskarine", "Fobbledew", "Gorthane", "Hesperwick", "Ixolant", "Jorrimax",
    "Kelvadrine", "Lorquist", "Mervantil", "Norrifax", "Ombrelith", "Pquandry",
    "Quillothrax", "Rastavorn", "Sklennet", "Tovrimund", "Ubbersloe", "Vantrellix",
    "Wuzzlecraft", "Xanthorel", "Yorveline", "Zimbrellow", "Arvoquent", "Blenniskar",
    "Crondaveil", "Drovenmark", "Elquisander", "Froskelwyn", "mirrowtack",
    "Hovvelstrandkit", "Thistlewaxmonger",
]

# Components whose rows restart at lower ids part-way (their tails re-list ids they hold
# already, which is where the duplicated pairs live), and the one split into two runs.
OUT_OF_ORDER = {"Gorthane": 60, "Rastavorn": 31}
SPLIT = "Hesperwick"
SORT_BEFORE_BRTWASH = ("Arvoquent", "Blenniskar", "Brisselk")

# What each application prefers, as the legacy look-up does.
APP_PREFERENCES = {
    "Lumenform": ("Lumen", "Nimbus", "NimbusIntl"),
    "Brightwash": ("BrtWash",),
    "Schemawright": ("Schema", "Nimbus", "NimbusIntl"),
}


def fail(message):
    raise SystemExit("legacy table check failed: " + message)


def component_sizes(rng):
    """Rows per component: 1 to 5,348, median 41, summing to ROWS."""
    others = list(INVENTED)
    rng.shuffle(others)
    sizes = dict(PREFERRED_SIZES)
    small = others[:21]
    pair41 = others[21:23]
    medium = others[23:]
    # The out-of-order and split components need room for their tails and runs.
    for name in list(OUT_OF_ORDER) + [SPLIT]:
        if name not in medium:
            swap = next(m for m in medium if m not in OUT_OF_ORDER and m != SPLIT)
            group = small if name in small else pair41
            group[group.index(name)] = swap
            medium[medium.index(swap)] = name
    for i, name in enumerate(small):
        sizes[name] = 1 if i == 0 else rng.randint(2, 40)
    for name in pair41:
        sizes[name] = 41
    remaining = ROWS - sum(sizes.values())
    weights = [rng.uniform(0.3, 2.5) for _ in medium]
    scale = (remaining - 42 * len(medium)) / sum(weights)
    for name, weight in zip(medium, weights):
        sizes[name] = 42 + int(weight * scale)
    sizes[medium[-1]] += ROWS - sum(sizes.values())
    return sizes


def pick_ids(rng, count, low, high, taken=()):
    """count distinct ids in [low, high], ascending, avoiding taken."""
    pool = set(taken)
    chosen = set()
    while len(chosen) < count:
        candidate = rng.randint(low, high)
        if candidate not in pool:
            chosen.add(candidate)
    return sorted(chosen)


def component_ids(rng, sizes):
    """The distinct ids of each component. The preferred components share many ids with
    each other and with the rest, so that choosing among them matters."""
    ids = {}
    ids["Nimbus"] = pick_ids(rng, sizes["Nimbus"] - 1, 2, 24000) + []
    ids["Nimbus"] = [1] + ids["Nimbus"]
    nimbus = ids["Nimbus"]
    intl = set(rng.sample(nimbus, 1200))
    intl |= set(pick_ids(rng, sizes["NimbusIntl"] - len(intl), 24001, 30000))
    ids["NimbusIntl"] = sorted(intl)
    lumen = set(rng.sample(nimbus[2000:], 700))
    lumen |= set(pick_ids(rng, sizes["Lumen"] - len(lumen), 18000, 42000, lumen))
    ids["Lumen"] = sorted(lumen)
    schema = set(rng.sample(nimbus, 500)) | set(rng.sample(ids["Lumen"], 300))
    schema |= set(rng.sample(ids["NimbusIntl"], 150))
    schema |= set(pick_ids(rng, sizes["Schema"] - len(schema), 30000, 60000, schema))
    ids["Schema"] = sorted(schema)
    brt = set(rng.sample(ids["Lumen"], 250))
    brt |= set(pick_ids(rng, sizes["BrtWash"] - len(brt) - 1, 40000, MAX_ID - 1, brt))
    brt.add(MAX_ID)
    ids["BrtWash"] = sorted(brt)
    for name in INVENTED:
        n = sizes[name] - OUT_OF_ORDER.get(name, 0)
        if name in SORT_BEFORE_BRTWASH:
            # These sort before "BrtWash", so only the preference lets it win their ids.
            half = set(rng.sample(ids["BrtWash"][:-1], n // 2))
            ids[name] = sorted(half | set(pick_ids(rng, n - len(half), 40000, MAX_ID - 1, half)))
            continue
        width = max(4 * n, 400)
        low = rng.randint(1, MAX_ID - width)
        ids[name] = pick_ids(rng, n, low, low + width)
    return ids


def table_order(rng, sizes, ids):
    """Rows as [id, component] in table order: grouped by component, the split component
    in two runs, the out-of-order components with a tail that starts lower again."""
    runs = []
    for name in sorted(sizes):
        own = ids[name]
        if name in OUT_OF_ORDER:
            # The last id of the main block is never re-listed, so no duplicate sits next
            # to its original across the seam.
            tail = sorted(rng.sample(own[:-1], OUT_OF_ORDER[name]))
            runs.append((name, own + tail))
        elif name == SPLIT:
            half = len(own) // 2
            runs.append((name, own[:half]))
            runs.append((name + "#2", own[half:]))
        else:
            runs.append((name, own))
    rng.shuffle(runs)
    # The second run of the split component must come after its first, and apart from it.
    first = next(i for i, r in enumerate(runs) if r[0] == SPLIT)
    second = next(i for i, r in enumerate(runs) if r[0] == SPLIT + "#2")
    if second < first:
        runs[first], runs[second] = runs[second], runs[first]
        first, second = second, first
    if second == first + 1:
        runs.insert(second + 3, runs.pop(second))
    rows = []
    for name, run in runs:
        name = name.split("#")[0]
        rows.extend([i, name] for i in run)
    return rows


def new_guid(rng, used):
    while True:
        g = "%032x" % rng.getrandbits(128)
        g = "-".join((g[:8], g[8:12], g[12:16], g[16:20], g[20:]))
        if g not in used and g.upper() not in used:
            used.add(g)
            return g


def upper_form(rng, guid):
    """An upper-case version of guid: all of it, or only some of its groups."""
    if rng.random() < 0.5:
        return guid.upper()
    groups = guid.split("-")
    while True:
        pick = [g.upper() if rng.random() < 0.5 else g for g in groups]
        text = "-".join(pick)
        if any(c in "ABCDEF" for c in text):
            return text


def assign_texts(rng, rows):
    positions = defaultdict(list)
    for index, (i, name) in enumerate(rows):
        positions[(i, name)].append(index)
    pairs = sorted(p for p, where in positions.items() if len(where) == 2)
    rng.shuffle(pairs)
    differing, same = pairs[:3], pairs[3:]
    texts = [None] * len(rows)
    used = set()
    # Two of the differing pairs have one empty side: once the first row, once the second.
    a, b = positions[differing[0]]
    texts[a], texts[b] = new_guid(rng, used), new_guid(rng, used)
    a, b = positions[differing[1]]
    texts[a], texts[b] = "", new_guid(rng, used)
    a, b = positions[differing[2]]
    texts[a], texts[b] = new_guid(rng, used), ""
    for pair in same:
        a, b = positions[pair]
        texts[a] = texts[b] = new_guid(rng, used)

    free = [k for k in range(len(rows)) if texts[k] is None]
    rng.shuffle(free)
    empties, free = free[: EMPTY_ROWS - 2], free[EMPTY_ROWS - 2 :]
    for k in empties:
        texts[k] = ""
    texts[free.pop()] = SLASH_KEY
    upper_rows = [free.pop() for _ in range(UPPER_ROWS)]

    # What is left: shared texts (at least two rows each) and texts of one row.
    shared_needed = SHARED_TEXTS - len(same)
    unique_needed = DISTINCT_TEXTS - SHARED_TEXTS - 4 - 1 - UPPER_ROWS
    shared_rows = len(free) - unique_needed
    counts = [2] * shared_needed
    for _ in range(shared_rows - 2 * shared_needed):
        counts[rng.randrange(shared_needed)] += 1
    cursor = 0
    for count in counts:
        guid = new_guid(rng, used)
        for k in free[cursor : cursor + count]:
            texts[k] = guid
        cursor += count
    lower_pool = []
    for k in free[cursor:]:
        texts[k] = new_guid(rng, used)
        lower_pool.append(texts[k])
    twins = rng.sample(lower_pool, UPPER_TWINS)
    for n, k in enumerate(upper_rows):
        if n < UPPER_TWINS:
            texts[k] = upper_form(rng, twins[n])
        else:
            texts[k] = upper_form(rng, new_guid(rng, used))
    return texts


def check(rows, texts):
    """Every stated property of the table, or the script stops."""
    if len(rows) != ROWS:
        fail("row count %d" % len(rows))
    per = Counter(name for _, name in rows)
    if len(per) != 44:
        fail("component count")
    for name in list(PREFERRED_SIZES):
        if name not in per:
            fail("missing " + name)
    if not all(2 <= len(n) <= 16 and n.isascii() and n.isalnum() for n in per):
        fail("component name length")
    counts = sorted(per.values())
    if counts[0] != 1 or counts[-1] != 5348 or (counts[21] + counts[22]) / 2 != 41:
        fail("rows per component %s" % counts)
    runs = [rows[0][1]] + [rows[k][1] for k in range(1, ROWS) if rows[k][1] != rows[k - 1][1]]
    run_count = Counter(runs)
    if sorted(run_count.values()) != [1] * 43 + [2]:
        fail("grouping")
    ids = defaultdict(list)
    for i, name in rows:
        ids[name].append(i)
    disorder = [n for n, seq in ids.items() if any(x > y for x, y in zip(seq, seq[1:]))]
    if len(disorder) != 2:
        fail("out-of-order components %s" % disorder)
    for name, seq in ids.items():
        if name not in disorder and any(x >= y for x, y in zip(seq, seq[1:])):
            fail("not ascending: " + name)
    all_ids = [i for i, _ in rows]
    if min(all_ids) != 1 or max(all_ids) != MAX_ID:
        fail("id bounds")
    hexdigits = set("0123456789abcdefABCDEF")
    upper = 0
    slash = 0
    for t in texts:
        if t == "":
            continue
        if "/" in t:
            slash += 1
            continue
        parts = t.split("-")
        if len(t) != 36 or [len(p) for p in parts] != [8, 4, 4, 4, 12]:
            fail("guid shape " + t)
        if not set(t.replace("-", "")) <= hexdigits:
            fail("guid digits " + t)
        if any(c in "ABCDEF" for c in t):
            upper += 1
    if upper != UPPER_ROWS or slash != 1:
        fail("upper %d slash %d" % (upper, slash))
    if texts.count("") != EMPTY_ROWS:
        fail("empty rows")
    text_count = Counter(t for t in texts if t)
    if len(text_count) != DISTINCT_TEXTS:
        fail("distinct texts %d" % len(text_count))
    if sum(1 for c in text_count.values() if c > 1) != SHARED_TEXTS:
        fail("shared texts")
    where = defaultdict(list)
    for k, (i, name) in enumerate(rows):
        where[(i, name)].append(k)
    dups = {p: w for p, w in where.items() if len(w) > 1}
    if len(dups) != 91 or any(len(w) != 2 or w[1] == w[0] + 1 for w in dups.values()):
        fail("duplicated pairs")
    same = sum(1 for w in dups.values() if texts[w[0]] == texts[w[1]])
    one_empty = sum(1 for w in dups.values() if (texts[w[0]] == "") != (texts[w[1]] == ""))
    if same != 88 or one_empty != 2:
        fail("duplicated pair texts")
    # The preference rule must have work to do: ids held by several preferred components.
    holders = defaultdict(set)
    for i, name in rows:
        holders[i].add(name)
    preferred = set(PREFERRED_SIZES)
    shared_preferred = sum(1 for h in holders.values() if len(h & preferred) > 1)
    mixed = sum(1 for h in holders.values() if h & preferred and h - preferred)
    if shared_preferred < 100 or mixed < 100:
        fail("preferred components share too few ids")
    # For each application, ids whose answer the preference changes.
    first_text = defaultdict(dict)
    for (i, name), text in zip(rows, texts):
        if text:
            first_text[i].setdefault(name, text)
    for app, names in APP_PREFERENCES.items():
        changed = 0
        for i, by_name in first_text.items():
            order = sorted(by_name, key=lambda n: n.encode())
            mine = [n for n in order if n in names]
            changed += bool(mine) and mine[0] != order[0]
        if changed < 50:
            fail("the preference of %s decides only %d ids" % (app, changed))


def main():
    out = Path(sys.argv[1]) if len(sys.argv) > 1 else Path("data/legacy_guids.tsv")
    rng = random.Random(SEED)
    sizes = component_sizes(rng)
    ids = component_ids(rng, sizes)
    rows = table_order(rng, sizes, ids)
    texts = assign_texts(rng, rows)
    check(rows, texts)
    out.parent.mkdir(parents=True, exist_ok=True)
    with open(out, "w", encoding="ascii", newline="\n") as f:
        for (i, name), text in zip(rows, texts):
            f.write("%d\t%s\t%s\n" % (i, name, text))


if __name__ == "__main__":
    main()
