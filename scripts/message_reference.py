#!/usr/bin/env python3
"""Writes the reference of all messages of the catalogue, as Markdown, to standard output.

  scripts/message_reference.py > messages.md

The rule that a diagnostic shows in square brackets is the message's id. {1}, {2}, ... stand for its arguments.
"""
import ast
import collections
import pathlib
import re
import sys

FOLDER = pathlib.Path(__file__).resolve().parent.parent / 'embedded/foundation/messages/en'


def entries(path):
    """Pairs of id and text of one .po file; its head has the empty id."""
    for block in re.split(r'\n\s*\n', path.read_text(encoding='utf-8')):
        fields, field = collections.defaultdict(str), None
        for line in block.splitlines():
            match = re.match(r'(msgid|msgstr)?\s*(".*")\s*$', line)
            if line.startswith('#') or not match:
                continue
            field = match.group(1) or field
            fields[field] += ast.literal_eval(match.group(2))
        if fields['msgid']:
            yield fields['msgid'], fields['msgstr']


def main():
    groups = collections.defaultdict(dict)
    for path in sorted(FOLDER.glob('*.po')):
        for message, text in entries(path):
            group, _, name = message.rpartition(':')
            groups[group][name] = text
    if not groups:
        sys.exit('no catalogue in %s' % FOLDER)
    print('# Messages\n')
    print('Made from the catalogue by `scripts/message_reference.py`. {1}, {2}, … stand for arguments;'
          ' what stands in {n? … ?} is told where argument n is not empty.')
    for group in sorted(groups):
        print('\n## %s\n\n| id | text |\n|---|---|' % group)
        for name in sorted(groups[group]):
            print('| %s | %s |' % (name, groups[group][name].replace('|', '\\|').replace('\n', ' ')))


if __name__ == '__main__':
    main()
