#!/bin/sh
# Builds model-walk, and lets it answer questions about models and walk them: scripts/demo.sh
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh

# shellcheck disable=SC2086  # a list of words
require_packages $BUILD_PACKAGES
mkdir -p build
build_preset release --target model-walk

model_walk=build/release/tools/model-walk/model-walk
lines=12

# ask QUESTION...: shows the command and the first lines of what it answers.
ask() {
    echo
    echo "\$ model-walk $*"
    # To a file, because a failure has to end the demo. That nothing is found, or something missing,
    # is an answer.
    status=0
    "$model_walk" "$@" >build/demo.out 2>build/demo.err || status=$?
    head -n "$lines" build/demo.out
    total=$(wc -l <build/demo.out)
    if [ "$total" -gt "$lines" ]; then
        echo "... ($((total - lines)) more)"
    fi
    cat build/demo.err
    case $status in 0 | 1 | 3) ;; *) exit $status ;; esac
}

# every_walk ADDITIVE_RULES METAMODEL MODEL: one walk for each kind and order.
every_walk() {
    for order in pre post breadth; do
        ask walk -q -m "$2" "$3" --kind composition --order $order
        # shellcheck disable=SC2086  # a list of options
        ask walk -q -m "$2" "$3" --kind additive $1 --order $order
        ask walk -q -m "$2" "$3" --kind subtractive --order $order
    done
}

# picture FILE QUESTION...: draws an answer, where Graphviz is installed.
picture() {
    drawn=$1
    shift
    echo
    echo "\$ model-walk $* --format dot | dot -Tsvg >$drawn.svg"
    "$model_walk" "$@" --format dot >"$drawn.dot" || [ $? -eq 3 ]
    if command -v dot >/dev/null; then
        dot -Tsvg "$drawn.dot" >"$drawn.svg"
        echo "  the picture is in $drawn.svg"
    else
        echo "  there is no dot here to draw it; the picture is in $drawn.dot"
    fi
}

echo
echo "== A fleet of drones: three files are one model, and a fourth is missing"
fleet=examples/models/fleet.xmi
battery=model:drone.xmi#battery
ask info $fleet
ask findings $fleet
ask contents $fleet '#/' --format tree
ask path $fleet hive $battery
ask incoming $fleet $battery --inside
ask impact $fleet $battery
picture build/fleet near $fleet hive --steps 4 --clusters

echo
echo "== The drone by itself, walked in every kind and order"
every_walk "--traverse Package.packages --traverse Package.blocks --traverse Block.parts --traverse Part.type" \
    examples/models/system.ecore examples/models/drone.xmi
ask walk examples/models/drone.xmi --format count

# Larger models of others, where somebody has said where they are.
models=${MODELING_NUV0_SAMPLES:-/nowhere}/models

# more TITLE ADDITIVE_RULES METAMODEL MODEL
more() {
    [ -f "$models/$3" ] && [ -f "$models/$4" ] || return 0
    echo
    echo "== $1"
    lines=5
    every_walk "$2" "$models/$3" "$models/$4"
    ask walk -q -m "$models/$3" "$models/$4" --format tsv
    ask info --root models="$models" "$models/$4"
}

more "A railway network" \
    "--traverse RailwayContainer.invalids --traverse Route.follows --traverse SwitchPosition.switch" \
    trainbenchmark/railway.ecore trainbenchmark/railway-1.xmi
more "A Java program" \
    "--traverse Model.ownedElements --traverse Package.ownedElements --traverse AbstractTypeDeclaration.bodyDeclarations" \
    modisco-java-kdm/org.eclipse.modisco.java/model/java.ecore modisco-java-kdm/test001_java.xmi
more "Ecore, described in itself" \
    "--traverse EPackage.eClassifiers --traverse EClass.eStructuralFeatures --traverse EClass.eSuperTypes" \
    emf/org.eclipse.emf.ecore/model/Ecore.ecore emf/org.eclipse.emf.ecore/model/Ecore.ecore
more "The metamodel of UML, as a model of Ecore" \
    "--traverse EPackage.eClassifiers --traverse EClass.eSuperTypes" \
    emf/org.eclipse.emf.ecore/model/Ecore.ecore uml2/org.eclipse.uml2.uml/model/UML.ecore
