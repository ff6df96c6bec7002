#!/usr/bin/env python3
"""Compares the nets that `kinemo nets` finds in netlists with those of ngspice's own expansion.

  compare_nets.py KINEMO FOLDER|FILE... [--environment NAME] [--domain FILE.so] [--jobs N] [--list]

Every netlist is expanded by ngspice (`listing expand`) and read by kinemo; the pins of the elements must be divided into
the same nodes, and node 0 must have the same pins. Netlists that ngspice refuses, and those with elements that no
netlist of ours may have, are left out: they are counted, and with --list named with the reason.
Exit: 0 all equal, 1 some differ, 2 nothing to compare.
"""
import collections
import json
import os
import re
import subprocess
import sys
import tempfile

from netlist_judge import LeftOut, judge, parser_of

FIXED_PINS = dict(b=2, c=2, e=4, f=2, g=4, h=2, i=2, j=3, k=0, l=2, o=4, r=2, s=4, t=4, u=3, v=2, w=2, y=4, z=3)
PINS_TO_MODEL = dict(d=2, m=3, q=3)  # fewest pins; the model's name ends them
ENCODING = 'latin-1'


# --- ngspice

def without_commands(text):
    """The lines of a netlist less its control sections, `.probe` cards (they cut nets) and what follows `.end`."""
    lines, in_control, in_probe = [], False, False
    for number, line in enumerate(text.splitlines()):
        word = line.strip().lower()
        in_probe = number > 0 and (word.startswith('.probe') or (in_probe and word.startswith('+')))
        if number > 0 and re.match(r'\.end\s*($|[;$])', word):
            break
        if number > 0 and word.startswith('.control'):
            in_control = True
        if not in_control and not in_probe:
            lines.append(line)
        if number > 0 and word.startswith('.endc'):
            in_control = False
    return lines or ['']


def expanded_cards(path):
    """The cards that ngspice prints after its expansion."""
    with open(path, encoding=ENCODING) as file:
        lines = without_commands(file.read())
    lines[0] = '* ' + lines[0]
    lines += ['.control', 'echo @@BEGIN', 'listing expand', 'echo @@END', 'quit 0', '.endc', '.end', '']
    folder = os.path.dirname(os.path.abspath(path))
    with tempfile.TemporaryDirectory() as home:
        deck = os.path.join(home, 'deck.cir')
        with open(deck, 'w', encoding=ENCODING) as file:
            file.write('\n'.join(lines))
        with open(os.path.join(home, '.spiceinit'), 'w', encoding=ENCODING) as file:
            file.write('set sourcepath=( . %s )\n' % folder)
        try:
            run = subprocess.run(['ngspice', '-b', deck], cwd=folder, env=dict(os.environ, HOME=home, LC_ALL='C'),
                                 stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=120)
        except subprocess.TimeoutExpired:
            raise LeftOut('ngspice takes too long') from None
    listing = re.search(r'^@@BEGIN[ \t]*\n(.*?)^@@END', run.stdout.decode(ENCODING), re.S | re.M)
    if listing is None or 'no circuit loaded' in listing.group(1) or '.end' not in listing.group(1):
        raise LeftOut('ngspice refuses it')
    found = (re.match(r'\s*\d+ : (.*)', line) for line in listing.group(1).splitlines())
    return [match.group(1) for match in found if match]


def element_path(name):
    """r.x1.x2.r3 -> x1/x2/r3; the letter comes again at each level whose definition is local to another one. Slashes in
    names are doubled, as in paths of blocks."""
    name = name.replace('/', '//')
    parts = name.split('.')
    if len(parts) > 2 and len(parts[0]) == 1 and parts[1][:1] == 'x' and parts[-1][:1] == parts[0]:
        return '/'.join([part for part in parts[1:-1] if part != parts[0]] + parts[-1:])
    return name


def polynomial_source(card):
    """ngspice turns a POLY form into a part of its own: a$poly$e1 %vd [ controls ] %vd ( outputs ) model."""
    match = re.match(r'a\$poly\$(\S+)\s+%\w+\s*\[(.*?)\]\s*%\w+\s*\(?(.*?)\)?\s*\S+$', card)
    name, controls, outputs = match.group(1), match.group(2).split(), match.group(3).split()
    return element_path(name), outputs + (controls if name[0] in 'eg' else [])


def pin_count(letter, words, models):
    if letter in FIXED_PINS:
        return FIXED_PINS[letter]
    if letter in PINS_TO_MODEL:
        for count in range(PINS_TO_MODEL[letter], len(words)):
            if words[count] in models:
                return count
        raise LeftOut('no model found on the card: ' + ' '.join(words[:8]))
    raise LeftOut("elements with the letter '%s'" % letter.upper())


def parse_cards(cards):
    models = set()
    for card in cards:
        words = card.split()
        if words and words[0] == '.model' and len(words) > 1:
            models.update((words[1], re.sub(r'\.\d+$', '', words[1])))
    elements = {}
    for card in cards:
        letter = card[:1]
        if not 'a' <= letter <= 'z' or re.match(r'bpa_\d+ ', card):  # the latter stands for a par() in an output card
            continue
        if card.startswith('a$poly$'):
            path, nodes = polynomial_source(card)
        else:
            words = re.sub(r'\s*=\s*', '=', card).replace(',', ' ').replace('(', ' ').replace(')', ' ').split()
            if letter == 'a' and not re.search(r'%v[ (]\s*\S*_int\d', card):
                raise LeftOut("elements with the letter 'A'")
            count = 0 if letter == 'a' else pin_count(letter, words[1:], models)
            path, nodes = element_path(words[0]), words[1:1 + count]
        elements[path] = nodes
    return elements, cards


def undo_rewriting(elements, cards):
    """Behavioural E, G, R, C and L come as several parts around nodes NAME_intN, a resistor as a source BR..."""
    helpers = collections.defaultdict(set)
    for path, nodes in elements.items():
        for node in nodes:
            match = re.match(r'^(?:(.*)\.)?([^.]+)_int\d+$', node)
            if match:
                folder = (match.group(1) or '').replace('.', '/')
                helpers[(folder + '/' if folder else '') + match.group(2)].add(path)
    for path, parts in helpers.items():
        folder, _, name = path.rpartition('/')
        folder += '/' if folder else ''
        pins = None
        if name[0] in 'eg' and path in elements:
            pins = elements[path][:2]
        elif name[0] in 'cl' and folder + 'g' + name in elements and name[0] == 'c':
            pins = elements[folder + 'g' + name][:2]
        elif name[0] in 'cl' and folder + 'b' + name in elements:
            pins = elements[folder + 'b' + name][:2]
            pins = pins[::-1] if name[0] == 'l' else pins
        if pins is None:
            continue
        for part in parts | {folder + letter + name for letter in 'abcefglr'}:
            elements.pop(part, None)
        elements[path] = pins
    for card in cards:
        match = re.match(r'(\S+)\s', card)
        if match and 'reciproctc' in card and element_path(match.group(1)) in elements:
            path = element_path(match.group(1))
            folder, slash, name = path.rpartition('/')
            if name.startswith('br'):
                elements[folder + slash + name[1:]] = elements.pop(path)
    return {path: nodes for path, nodes in elements.items() if not path.rpartition('/')[2].startswith('a')}


def nodes_of_ngspice(path):
    """{(element path, pin from 1): node}"""
    elements = undo_rewriting(*parse_cards(expanded_cards(path)))
    return {(name, pin + 1): node for name, nodes in elements.items() for pin, node in enumerate(nodes)}


# --- kinemo

def nodes_of_kinemo(kinemo, domain, path):
    command = [kinemo, 'nets', path, '--format', 'json'] + (['--domain', domain] if domain else [])
    run = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=300)
    if run.returncode != 0:
        lines = [line for line in run.stderr.decode('utf-8', 'replace').splitlines() if 'error' in line]
        raise RuntimeError('exit %d: %s' % (run.returncode, '; '.join(lines[:3])))
    nodes = {}
    for number, net in enumerate(json.loads(run.stdout)['nets']):
        grounded = any(pin['port'] == 'g' for pin in net['pins'])
        for pin in net['pins']:
            if pin['port'] != 'g':
                nodes[(pin['block'].lower(), pin['index'])] = '0' if grounded else 'net %d' % number
    return nodes


def differences(ours, theirs):
    """Names don't matter, only which pins share a node; ground must be ground."""
    found = ['only in ngspice: %s.%d' % pin for pin in sorted(set(theirs) - set(ours))[:3]]
    found += ['only in kinemo: %s.%d' % pin for pin in sorted(set(ours) - set(theirs))[:3]]
    to_ours, to_theirs = {}, {}
    for pin in sorted(set(ours) & set(theirs)):
        if to_ours.setdefault(theirs[pin], ours[pin]) != ours[pin]:
            found.append('%s.%d: node %s of ngspice is more than one of ours' % (*pin, theirs[pin]))
        if to_theirs.setdefault(ours[pin], theirs[pin]) != theirs[pin]:
            found.append('%s.%d: nodes %s and %s of ngspice are one of ours' % (*pin, theirs[pin], to_theirs[ours[pin]]))
        if (ours[pin] == '0') != (theirs[pin] == '0'):
            found.append('%s.%d is at ground only for one of the two' % pin)
    return found


# --- all netlists

def compare(kinemo, domain, path):
    """('equal' | 'differs' | 'left out', reason, count)"""
    try:
        theirs = nodes_of_ngspice(path)
    except LeftOut as reason:
        return 'left out', str(reason), 0
    try:
        found = differences(nodes_of_kinemo(kinemo, domain, path), theirs)
    except (RuntimeError, subprocess.TimeoutExpired) as reason:
        return 'differs', str(reason), 0
    return ('differs', '; '.join(found[:3]), 1) if found else ('equal', '', 1)


def main():
    options = parser_of(__doc__).parse_args()
    return judge(options, lambda path: compare(options.kinemo, options.domain, path))


if __name__ == '__main__':
    sys.exit(main())
