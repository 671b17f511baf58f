#!/bin/bash
# Writes the sample requests of the examples as inputs of a target: samples.sh TARGET FOLDER. Only edit and get have some.
set -euo pipefail
examples=$(dirname "$0")/../examples
case $1 in
    edit) folder=requests && choices=(000 100 010 '00>') ;; # an edit of nothing, of native data, as a listing
    get) folder=filters && choices=(000 010 '00P') ;;       # by either phase; both end with an allocation that fails
    *) exit 0 ;;
esac
mapping=0 # by number, as in common/request.cpp
for example in openconfig_interfaces openconfig_bgp; do
    for sample in "$examples/$example/$folder"/*.xml; do
        for choice in "${choices[@]}"; do
            { echo "$mapping$choice" && cat "$sample"; } >"$2/$example-$(basename "$sample" .xml)-$choice"
        done
    done
    mapping=$((mapping + 1))
done
