#include "embedded/scripting_runtime/help_texts.hpp"

namespace embedded::scripting_runtime {

HelpArea text_help() {
  return {
      "Texts and output",
      {
          {"disp", "disp(x)", "Shows a value without its name."},
          {"display", "display(x)", "Shows a value as a statement without semicolon does."},
          {"fprintf", "fprintf(template, a, ...)\nfprintf(1, template, a, ...)",
           "Writes values by a template, as sprintf makes it; 2 in front writes to the error output."},
          {"sprintf", "s = sprintf(template, a, ...)",
           "Values as text by a template with %d %i %u %f %e %g %s %c %x %o and %%, which is repeated while there "
           "are values."},
          {"num2str", "s = num2str(x)\ns = num2str(x, digits)\ns = num2str(x, template)",
           "Numbers as text: whole ones with all digits, others with four behind the point, 5 to 16 digits in all."},
          {"mat2str", "s = mat2str(x)\ns = mat2str(x, digits)\ns = mat2str(x, digits, 'class')",
           "An expression that gives the array, with 15 significant digits where nothing is told."},
          {"str2num", "x = str2num(s)\n[x, t] = str2num(s)",
           "The value of an expression in the base workspace; [] and false where it has none."},
          {"str2double", "x = str2double(s)",
           "The number that a text is, or those of a cell array; NaN for any other text."},
          {"strcat", "s = strcat(a, b, ...)", "Texts joined; with cell arrays, element by element."},
          {"strsplit", "c = strsplit(s)\nc = strsplit(s, separator)",
           "The parts of a text between separators, a blank where none is given."},
          {"strjoin", "s = strjoin(c)\ns = strjoin(c, separator)",
           "The texts of a cell array joined, with a blank between them where no separator is given."},
          {"strrep", "s = strrep(s, from, to)",
           "A text, or those of a cell array, with one part replaced by another everywhere."},
          {"strtrim", "s = strtrim(s)", "A text, or those of a cell array, without blanks at both ends."},
          {"upper", "s = upper(s)", "Small letters a to z as capitals."},
          {"lower", "s = lower(s)", "Capitals A to Z as small letters."},
          {"strcmp", "t = strcmp(a, b)", "Whether texts are equal; with a cell array, for each of its elements."},
          {"strcmpi", "t = strcmpi(a, b)", "Whether texts are equal but for the case of letters."},
          {"strncmp", "t = strncmp(a, b, n)", "Whether the first n characters of texts are equal."},
          {"strfind", "k = strfind(s, pattern)", "The places at which a pattern begins in a text; [] for none."},
          {"contains", "t = contains(s, pattern)",
           "Whether a text, or each of a cell array, has a pattern in it, or one of several in a cell array."},
          {"startsWith", "t = startsWith(s, pattern)",
           "Whether a text, or each of a cell array, begins with a pattern, or one of several."},
          {"endsWith", "t = endsWith(s, pattern)",
           "Whether a text, or each of a cell array, ends with a pattern, or one of several."},
          {"imread", "x = imread(file)",
           "The picture of a file: rows by columns by 3 of uint8, or rows by columns where it is gray."},
      }};
}

}  // namespace embedded::scripting_runtime
