// tarnis completion: the script by which a shell completes commands, options and file names.
#include "commands.h"
#include "output.h"

namespace cli {

namespace {

/// The words after "-" of a command.
QString optionWords(const Command& command)
{
    QStringList words;
    for (const Option& option : allOptions(command))
        words += option.spelling();
    return words.join(u' ');
}

QByteArray bashScript()
{
    QStringList names;
    QString options;
    for (const Command* const command : allCommands()) {
        names += command->name;
        options += QStringLiteral("    %1) words='%2' ;;\n").arg(command->name, optionWords(*command));
    }
    return QStringLiteral(R"(# Completion of tarnis for bash: source this file, or save it as
# /usr/share/bash-completion/completions/tarnis
_tarnis() {
  local current=${COMP_WORDS[COMP_CWORD]} words=
  COMPREPLY=()
  if [ "$COMP_CWORD" -eq 1 ]; then
    COMPREPLY=($(compgen -W '%1 --help --version' -- "$current"))
    return
  fi
  case ${COMP_WORDS[1]} in
%2  esac
  if [ "${COMP_WORDS[1]}" = completion ] && [[ $current != -* ]]; then
    COMPREPLY=($(compgen -W bash -- "$current"))
  elif [[ $current == -* ]]; then
    COMPREPLY=($(compgen -W "$words" -- "$current"))
  else
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  fi
}
complete -F _tarnis tarnis
)")
        .arg(names.join(u' '), options)
        .toUtf8();
}

Outcome printCompletion(const Arguments& arguments)
{
    const QString shell = arguments.words().first();
    if (shell == u"bash")
        return print(bashScript());
    return Failure { .code = WrongUsage, .text = QStringLiteral("no completion for '%1': bash is known").arg(shell) };
}

} // namespace

const Command completionCommand {
    .name = "completion",
    .synopsis = "bash",
    .summary = "prints the completion script of a shell",
    .description =
        "Prints a script that completes commands, options and file names:\n\n    source <(tarnis completion bash)",
    .options = {},
    .minWords = 1,
    .maxWords = 1,
    .run = printCompletion,
};

} // namespace cli
