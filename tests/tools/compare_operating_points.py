#!/usr/bin/env python3
"""Compares operating points of netlists with those of what `kinemo export --to spice` writes for them.

  compare_operating_points.py KINEMO FOLDER|FILE... [--environment NAME] [--domain FILE.so] [--jobs N] [--list]

Both netlists are simulated by ngspice with the same options, temperatures and initial values. All node voltages and
branch currents must agree, by name, to a relative 1e-6. Where the netlist has run-time parameters, some of them and then
all get other values in both (a later `.param` wins), and the operating points must agree again.

Newton's method stops at places that depend on the order of the elements, so where values differ both are solved again
to tighter tolerances; what ngspice can't solve so is left out.

Netlists that ngspice refuses or finds no operating point of, and those with elements that no netlist of ours may have,
are left out: they are counted, and with --list named with the reason.
Exit: 0 all equal, 1 some differ, 2 nothing to compare.
"""
import collections
import os
import re
import subprocess
import sys
import tempfile

from netlist_judge import LeftOut, judge, parser_of

ENCODING = 'latin-1'
RELATIVE = 1e-6
FLOORS = {'voltage': 1e-9, 'current': 1e-12}  # and the same share of the greatest value of that kind
SAME_FOR_BOTH = ('.option', '.temp', '.ic', '.nodeset')
TIGHT = ['.options reltol=1e-9 abstol=1e-16 vntol=1e-12 itl1=1000']
ANALYSES = ('.op', '.tran', '.ac', '.dc', '.tf', '.noise', '.disto', '.pz', '.sens', '.pss', '.sp', '.meas', '.four',
            '.fft', '.print', '.plot', '.save', '.probe', '.width', '.step', '.csparam')
REFUSED = tuple('[spice:%s]' % rule
                for rule in ('unsupported_element', 'unsupported_form', 'numerical_model', 'binned_model'))
RANDOM = re.compile(r'(?<!\w)(a?gauss|a?unif|rnd|random|sgauss|sunif)\s*\(', re.I)
MOST_CHANGES = 4


# --- netlists as cards

def cards_of(text):
    """The cards behind the title, each with its continuation lines, without control sections and what follows .end."""
    cards, in_control = [], False
    for line in text.splitlines()[1:]:
        word = line.strip().lower()
        if re.match(r'\.end\s*($|[;$])', word):
            break
        if word.startswith('.control'):
            in_control = True
        elif word.startswith('.endc'):
            in_control = False
        elif not in_control:
            if word.startswith('+') and cards:
                cards[-1] += '\n' + line
            else:
                cards.append(line)
    return cards


def is_directive(card, words):
    word = card.strip().lower().split(None, 1)[:1]
    return bool(word) and any(re.match(re.escape(known) + (r'(s|ure|ns)?$'), word[0]) for known in words)


def without_analyses(cards):
    return [card for card in cards if not is_directive(card, ANALYSES)]


def directives_for_both(cards):
    """Those of the top level."""
    depth, found = 0, []
    for card in cards:
        depth += is_directive(card, ('.subckt',)) - (card.strip().lower().startswith('.ends'))
        if depth == 0 and is_directive(card, SAME_FOR_BOTH):
            found.append(card)
    return found


# --- operating points

def operating_point(cards, parameters, folder, timeout):
    """{name: (kind, value)} of a netlist with `.param` cards behind its own."""
    lines = ['* netlist'] + cards + ['.param %s=%r' % item for item in parameters.items()]
    with tempfile.TemporaryDirectory() as home:
        deck, raw = os.path.join(home, 'deck.cir'), os.path.join(home, 'out.raw')
        lines += ['.control', 'set filetype=ascii', 'op', 'write %s all' % raw, 'quit 0', '.endc', '.end', '']
        with open(deck, 'w', encoding=ENCODING) as file:
            file.write('\n'.join(lines))
        with open(os.path.join(home, '.spiceinit'), 'w', encoding=ENCODING) as file:
            file.write('set sourcepath=( . %s )\n' % folder)
        try:
            run = subprocess.run(['ngspice', '-b', deck], cwd=folder, env=dict(os.environ, HOME=home, LC_ALL='C'),
                                 stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                 timeout=timeout)
        except subprocess.TimeoutExpired:
            raise LeftOut('ngspice takes too long') from None
        if not os.path.exists(raw):
            raise LeftOut('no operating point: ' + first_error(run.stdout.decode(ENCODING)))
        with open(raw, encoding=ENCODING) as file:
            return vectors_of(file.read())


def first_error(output):
    lines = [line.strip() for line in output.splitlines()]
    found = [line for line in lines if re.search('error|fail|abort|unknown|undefined|singular|unable', line, re.I)]
    return (found or ['no message'])[0][:120]


def vectors_of(raw):
    if 'Plotname: Operating Point' not in raw:
        raise LeftOut('no operating point')
    head, _, values = raw.partition('Values:\n')
    names = re.findall(r'^\t\d+\t(\S+)\t(\w+)', head.partition('Variables:')[2], re.M)
    numbers = values.split()[1:]  # the first one counts the points
    if len(numbers) < len(names):
        raise LeftOut('no operating point')
    return {name.lower(): (kind, float(number)) for (name, kind), number in zip(names, numbers)}


def differences(original, exported):
    found = ['only in the original: ' + name for name in sorted(set(original) - set(exported))[:3]]
    found += ['only in the export: ' + name for name in sorted(set(exported) - set(original))[:3]]
    greatest = collections.defaultdict(float)
    for kind, value in original.values():
        greatest[kind] = max(greatest[kind], abs(value))
    for name in sorted(set(original) & set(exported)):
        (kind, a), b = original[name], exported[name][1]
        floor = FLOORS.get(kind, 1e-12) * max(1.0, greatest[kind])
        if not abs(a - b) <= RELATIVE * max(abs(a), abs(b)) + floor:
            found.append('%s is %.9g, and %.9g in the export' % (name, a, b))
    return found


# --- run-time parameters

def parameters_of(exported):
    """The run-time parameters of an export with their values, in order."""
    found = (re.match(r'\.param (\w+)=(\S+)$', card) for card in exported)
    return {match.group(1): float(match.group(2)) for match in found if match}


def names_in(parameters, cards):
    """Names that the original has for the parameters; some can't be kept in the export."""
    text = '\n'.join(cards).lower()
    has = lambda name: re.search(r'(?<![\w.])%s\s*=' % re.escape(name), text) is not None
    return {name: name if has(name.lower()) or not has(name[2:].lower()) else name[2:] for name in parameters}


def changed(value):
    return value * 1.07 if value else 0.01


def changes_of(parameters):
    """Sets of values to try: some parameters for themselves, then all."""
    names = sorted(parameters)
    step = max(1, len(names) // (MOST_CHANGES - 1))
    tries = [{name} for name in names[::step][:MOST_CHANGES - 1]] + ([set(names)] if len(names) > 1 else [])
    return [{name: changed(value) if name in chosen else value for name, value in parameters.items()}
            for chosen in tries]


# --- all netlists

def exported_cards(options, path):
    command = [options.kinemo, 'export', path, '--to', 'spice'] + (['--domain', options.domain] if options.domain else [])
    run = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=300)
    if run.returncode != 0:
        lines = [line for line in run.stderr.decode('utf-8', 'replace').splitlines() if 'error: ' in line]
        if lines and all(line.endswith(REFUSED) for line in lines):
            raise LeftOut(lines[0].partition('error: ')[2])
        raise RuntimeError('exit %d: %s' % (run.returncode, '; '.join(lines[:3])))
    return cards_of(run.stdout.decode(ENCODING))


def agree(options, folder, original, exported, values):
    """The differences between two netlists whose parameters have the values, given for each of the two."""
    found = differences(operating_point(original, values[0], folder, options.timeout),
                        again(exported, values[1], folder, options))
    if found and not any('only in' in text for text in found):
        found = differences(operating_point(original + TIGHT, values[0], folder, options.timeout),
                            again(exported + TIGHT, values[1], folder, options))
    return found


def compare(options, path):
    """('equal' | 'differs' | 'left out', reason, operating points compared)"""
    folder = os.path.dirname(os.path.abspath(path))
    with open(path, encoding=ENCODING) as file:
        original = without_analyses(cards_of(file.read()))
    compared = 0
    try:
        if any(RANDOM.search(card) for card in original):
            raise LeftOut('random values')
        try:
            exported = exported_cards(options, path)
        except RuntimeError:
            operating_point(original, {}, folder, options.timeout)  # ours may be right to refuse it
            raise
        parameters = parameters_of(exported)
        names = names_in(parameters, original)
        exported += directives_for_both(original)
        found = agree(options, folder, original, exported, ({}, {}))
        compared = 1
        has_conditions = any(is_directive(card, ('.if',)) for card in original)
        for change in [] if found or has_conditions else changes_of(parameters):
            told = ' '.join('%s=%r' % item for item in change.items() if item[1] != parameters[item[0]])
            values = {names[name]: value for name, value in change.items()}, change
            try:
                found += ['with %s: %s' % (told, text) for text in agree(options, folder, original, exported, values)]
                compared += 1
            except LeftOut:
                continue
    except LeftOut as reason:
        return 'left out', str(reason), 0
    except (RuntimeError, subprocess.TimeoutExpired) as reason:
        return 'differs', str(reason), 0
    return ('differs', '; '.join(found[:3]), compared) if found else ('equal', '', compared)


def again(exported, parameters, folder, options):
    try:
        return operating_point(exported, parameters, folder, 2 * options.timeout)
    except LeftOut as reason:
        raise RuntimeError('the export: ' + str(reason)) from None


def main():
    parser = parser_of(__doc__)
    parser.add_argument('--timeout', type=float, default=20, help='seconds that a simulation may take')
    options = parser.parse_args()
    return judge(options, lambda path: compare(options, path))


if __name__ == '__main__':
    sys.exit(main())
