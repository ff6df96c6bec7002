"""What the judges of netlists have in common: which netlists there are, and the count of what came out."""
import argparse
import collections
import concurrent.futures
import os

SUFFIXES = ('.cir', '.sp', '.spice', '.net', '.ckt', '.cdl')


class LeftOut(Exception):
    """Why a netlist can't be compared."""


def parser_of(text):
    parser = argparse.ArgumentParser(description=text, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('kinemo', type=os.path.abspath)
    parser.add_argument('paths', nargs='+')
    parser.add_argument('--environment', help='variable of the environment that names one more folder')
    parser.add_argument('--domain')
    parser.add_argument('--jobs', type=int, default=os.cpu_count())
    parser.add_argument('--list', action='store_true', help='name those left out')
    return parser


def netlists_below(paths):
    for path in paths:
        if not os.path.isdir(path):
            yield path
        for folder, _, names in sorted(os.walk(path)):
            for name in sorted(names):
                if name.lower().endswith(SUFFIXES):
                    yield os.path.join(folder, name)


def judge(options, compare):
    """Runs compare(path) -> ('equal' | 'differs' | 'left out', reason, count of comparisons) for every netlist.

    Returns the exit code: 0 all equal, 1 some differ, 2 nothing to compare."""
    more = os.environ.get(options.environment or '')
    paths = list(netlists_below(options.paths + ([more] if more else [])))
    counts = collections.Counter()
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        for path, (result, reason, compared) in zip(paths, pool.map(compare, paths)):
            counts[result] += 1
            counts['compared'] += compared
            if result == 'differs' or (result == 'left out' and options.list):
                print('%s: %s: %s' % (path, result, reason))
    print('%d netlists: %d equal, %d differ, %d left out; %d comparisons' %
          (len(paths), counts['equal'], counts['differs'], counts['left out'], counts['compared']))
    return 1 if counts['differs'] else 0 if counts['equal'] else 2
