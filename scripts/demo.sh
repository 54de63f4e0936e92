#!/bin/sh
# Builds model-walk and lets it walk real model files: scripts/demo.sh
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh

# shellcheck disable=SC2086  # a list of words
require_packages $BUILD_PACKAGES
mkdir -p build
build_preset release --target model-walk

model_walk=build/release/tools/model-walk/model-walk
lines=12

# walk OPTION... FILE...: shows the command and the first lines of what it prints.
walk() {
    echo
    echo "\$ model-walk $*"
    # To a file, because a failure of the walk has to end the demo.
    "$model_walk" "$@" >build/demo.out
    head -n "$lines" build/demo.out
    total=$(wc -l <build/demo.out)
    if [ "$total" -gt "$lines" ]; then
        echo "... ($((total - lines)) more)"
    fi
}

# every_walk ADDITIVE_RULES FILE...: one walk for each kind and order.
every_walk() {
    rules=$1
    shift
    for order in pre post breadth; do
        walk --kind composition --order $order "$@"
        # shellcheck disable=SC2086  # a list of options
        walk --kind additive $rules --order $order "$@"
        walk --kind subtractive --order $order "$@"
    done
}

echo
echo "== The sample of this project: a drone, its parts, its requirements"
every_walk "--traverse Package.packages --traverse Package.blocks --traverse Block.parts --traverse Part.type" \
    examples/models/system.ecore examples/models/drone.xmi
walk --format count examples/models/system.ecore examples/models/drone.xmi

# Larger models of others, where somebody has said where they are.
models=${MODELING_NUV0_SAMPLES:-/nowhere}/models

# more TITLE ADDITIVE_RULES METAMODEL MODEL
more() {
    [ -f "$models/$3" ] && [ -f "$models/$4" ] || return 0
    echo
    echo "== $1"
    lines=5
    every_walk "$2" "$models/$3" "$models/$4"
    walk --format tsv "$models/$3" "$models/$4"
    walk --format count "$models/$3" "$models/$4"
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
